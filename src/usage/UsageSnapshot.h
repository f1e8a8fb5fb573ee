#pragma once

#include "usage/DetectedAgent.h"
#include "usage/TokenEvent.h"

#include <cstdint>
#include <vector>

namespace morvo {

/// What the agents on this machine burned in the last seven days.
struct UsageSnapshot {
  std::vector<DetectedAgent> agents;
  std::vector<TokenEvent> events; ///< Of all agents.
  std::int64_t weekTokens = 0;    ///< Billable tokens of all agents.

  bool operator==(const UsageSnapshot &) const = default;
};

} // namespace morvo
