#include "monitor/QuotaTrust.h"

#include <QtGlobal>

namespace morvo {

QString rawValue(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return QStringLiteral("live");
  case QuotaTrust::calibrated:
    return QStringLiteral("calibrated");
  case QuotaTrust::metered:
    return QStringLiteral("metered");
  case QuotaTrust::missing:
    return QStringLiteral("missing");
  }
  Q_UNREACHABLE();
}

} // namespace morvo
