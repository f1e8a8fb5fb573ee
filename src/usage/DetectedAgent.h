#pragma once

#include "usage/AgentAccount.h"
#include "usage/LiveRateLimit.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace morvo {

/// A coding agent found on this machine, and what it burned.
struct DetectedAgent {
  QString id;
  QString name;
  QString detectedPath;
  std::int64_t windowTokens = 0; ///< Billable tokens of the last 5 hours.
  std::int64_t weekTokens = 0;   ///< Billable tokens of the last 7 days.
  double cost = 0;               ///< US dollars in the 5-hour window.
  std::optional<AgentAccount> account;
  std::optional<LiveRateLimit> liveLimit;

  bool operator==(const DetectedAgent &) const = default;
};

} // namespace morvo
