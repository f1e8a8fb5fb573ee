#pragma once

#include "usage/TokenEvents.h"
#include "usage/UsageCalibrator.h"
#include "usage/UsageStats.h"

#include <optional>

/// What token events add up to.
namespace morvo::UsageAnalytics {

/// A ceiling that is given stands; else `calibrator` tells it, and learns.
[[nodiscard]] UsageStats compute(const TokenEvents &events, std::int64_t weekTokens, WallTime now,
                                 UsageCalibrator &calibrator,
                                 std::optional<std::int64_t> ceiling = {},
                                 std::optional<std::int64_t> weeklyCeiling = {});

/// The count as a percentage of its ceiling, rounded, 0 to 100; `unknown` with a ceiling below 1.
[[nodiscard]] int percentage(std::int64_t count, std::int64_t ceiling, int unknown);

/// The pressure that a percentage of the 5-hour window means.
[[nodiscard]] UsageLevel level(int usedPct);

} // namespace morvo::UsageAnalytics
