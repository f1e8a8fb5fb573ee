#include "monitor/AttentionKind.h"

#include <QtGlobal>

namespace morvo {

QString rawValue(AttentionKind kind) {
  switch (kind) {
  case AttentionKind::needsConfirm:
    return QStringLiteral("needsConfirm");
  case AttentionKind::agentDone:
    return QStringLiteral("agentDone");
  case AttentionKind::quotaPressure:
    return QStringLiteral("quotaPressure");
  case AttentionKind::running:
    return QStringLiteral("running");
  case AttentionKind::connectorGap:
    return QStringLiteral("connectorGap");
  case AttentionKind::calm:
    return QStringLiteral("calm");
  }
  Q_UNREACHABLE();
}

} // namespace morvo
