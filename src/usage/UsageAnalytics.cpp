#include "usage/UsageAnalytics.h"

#include "usage/TokenCount.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace morvo {
namespace {

constexpr auto window = std::chrono::hours(5);
constexpr auto burnWindow = std::chrono::hours(1);
constexpr double burnMinutes = 60;
/// Slower burning says nothing about when it will end.
constexpr double slowestBurn = 1;

/// What is shown without a ceiling.
constexpr int unknownWindow = 50;
constexpr int unknownWeek = 0;

constexpr int warnPct = 70;
constexpr int highPct = 85;
constexpr int criticalPct = 95;

/// Minutes until nothing is left; absent when that cannot be told.
std::optional<int> minutesFor(std::int64_t left, double burnPerMin) {
  if (left < 1 || !(burnPerMin > slowestBurn)) {
    return std::nullopt;
  }
  const double minutes = std::round(static_cast<double>(left) / burnPerMin);
  return static_cast<int>(std::min(minutes, double{std::numeric_limits<int>::max()}));
}

} // namespace

int UsageAnalytics::percentage(std::int64_t count, std::int64_t ceiling, int unknown) {
  if (ceiling < 1) {
    return unknown;
  }
  const double share = static_cast<double>(count) / static_cast<double>(ceiling) * 100;
  return static_cast<int>(std::round(std::clamp(share, 0.0, 100.0)));
}

UsageLevel UsageAnalytics::level(int usedPct) {
  return usedPct >= criticalPct ? UsageLevel::critical
         : usedPct >= highPct   ? UsageLevel::high
         : usedPct >= warnPct   ? UsageLevel::warn
                                : UsageLevel::normal;
}

UsageStats UsageAnalytics::compute(const TokenEvents &events, std::int64_t weekTokens, WallTime now,
                                   UsageCalibrator &calibrator, std::optional<std::int64_t> ceiling,
                                   std::optional<std::int64_t> weeklyCeiling) {
  UsageStats stats{.weekTokens = weekTokens};
  std::int64_t burned = 0;
  for (const TokenEvent event : events) {
    if (event.ts >= now - window) {
      stats.windowTokens = TokenCount::sum(stats.windowTokens, event.billable);
      stats.costUSD += event.cost;
    }
    if (event.burnable && event.ts >= now - burnWindow) {
      burned = TokenCount::sum(burned, event.billable);
    }
  }
  stats.burnPerMin = static_cast<double>(burned) / burnMinutes;
  stats.ceiling = ceiling ? *ceiling : calibrator.ceiling(stats.windowTokens);
  stats.usedPct = percentage(stats.windowTokens, stats.ceiling, unknownWindow);
  stats.minutesToCeiling =
      minutesFor(TokenCount::difference(stats.ceiling, stats.windowTokens), stats.burnPerMin);
  stats.weeklyCeiling = weeklyCeiling ? *weeklyCeiling : calibrator.weeklyCeiling(weekTokens);
  stats.weeklyPct = percentage(weekTokens, stats.weeklyCeiling, unknownWeek);
  stats.level = level(stats.usedPct);
  return stats;
}

} // namespace morvo
