#pragma once

#include "monitor/AttentionKind.h"

#include <QString>

#include <optional>

namespace morvo {

/// One thing that deserves the user's eye, in the words shown.
struct AttentionItem {
  QString id;
  AttentionKind kind = AttentionKind::calm;
  QString title;
  QString detail;
  std::optional<QString> agentName;

  bool operator==(const AttentionItem &) const = default;
};

} // namespace morvo
