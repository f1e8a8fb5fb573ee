#pragma once

#include "base/Time.h"

#include <QString>

#include <optional>

namespace morvo {

/// How much of its plan an agent says it has used.
struct LiveRateLimit {
  double primaryPct = 0; ///< Used percentage of the short window: 5 hours, or the session.
  double weeklyPct = 0;  ///< Used percentage of the week.
  std::optional<WallTime> primaryResetsAt;
  std::optional<WallTime> weeklyResetsAt;
  QString plan; ///< The plan, or where the figure comes from.

  bool operator==(const LiveRateLimit &) const = default;
};

} // namespace morvo
