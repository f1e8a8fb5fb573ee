#pragma once

#include "usage/DetectedAgent.h"
#include "usage/TokenEvents.h"

#include <cstdint>
#include <vector>

namespace morvo {

/// What the agents on this machine burned in the last seven days.
struct UsageSnapshot {
  std::vector<DetectedAgent> agents;
  TokenEvents events;          ///< Of all agents.
  std::int64_t weekTokens = 0; ///< Billable tokens of all agents.

  bool operator==(const UsageSnapshot &) const = default;
};

} // namespace morvo
