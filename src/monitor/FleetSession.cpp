#include "monitor/FleetSession.h"

#include <QtGlobal>

namespace morvo {

QString rawValue(FleetStatus status) {
  switch (status) {
  case FleetStatus::running:
    return QStringLiteral("running");
  case FleetStatus::done:
    return QStringLiteral("done");
  case FleetStatus::idle:
    return QStringLiteral("idle");
  }
  Q_UNREACHABLE();
}

} // namespace morvo
