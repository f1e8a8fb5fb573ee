#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace morvo {

/// Pressure of use.
enum class UsageLevel { normal, warn, high, critical };

/// "normal", "warn", …
[[nodiscard]] QString rawValue(UsageLevel level);

/// What all agents together used, in the 5-hour window and in 7 days.
struct UsageStats {
  std::int64_t windowTokens = 0; ///< Billable tokens of the last 5 hours.
  std::int64_t weekTokens = 0;   ///< Billable tokens of the last 7 days.
  double costUSD = 0;            ///< Cost of the 5-hour window in US dollars.
  double burnPerMin = 0;         ///< Tokens a minute over the last hour.
  std::int64_t ceiling = 0;      ///< Learned 5-hour ceiling.
  int usedPct = 0;               ///< Window as a percentage of its ceiling, 0 to 100.
  std::optional<int> minutesToCeiling;
  std::int64_t weeklyCeiling = 0;
  int weeklyPct = 0; ///< Week as a percentage of its ceiling.
  UsageLevel level = UsageLevel::normal;

  bool operator==(const UsageStats &) const = default;
};

} // namespace morvo
