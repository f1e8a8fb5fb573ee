#include "usage/UsageStats.h"

#include <QtGlobal>

namespace morvo {

QString rawValue(UsageLevel level) {
  switch (level) {
  case UsageLevel::normal:
    return QStringLiteral("normal");
  case UsageLevel::warn:
    return QStringLiteral("warn");
  case UsageLevel::high:
    return QStringLiteral("high");
  case UsageLevel::critical:
    return QStringLiteral("critical");
  }
  Q_UNREACHABLE();
}

} // namespace morvo
