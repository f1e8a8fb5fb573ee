#pragma once

#include <QString>

namespace morvo {

/// What can deserve the user's eye, in the order of importance.
enum class AttentionKind { needsConfirm, agentDone, quotaPressure, running, connectorGap, calm };

/// "needsConfirm", "agentDone", …
[[nodiscard]] QString rawValue(AttentionKind kind);

} // namespace morvo
