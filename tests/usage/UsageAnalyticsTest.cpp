#include "usage/UsageAnalytics.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

class UsageAnalyticsTest : public testing::Test {
protected:
  [[nodiscard]] TokenEvent event(Duration age, std::int64_t billable, bool burnable = true,
                                 double cost = 0) const {
    return {.ts = m_clock.now() - std::chrono::duration_cast<std::chrono::milliseconds>(age),
            .billable = billable,
            .cost = cost,
            .burnable = burnable};
  }
  [[nodiscard]] UsageStats compute(const TokenEvents &events,
                                   std::optional<std::int64_t> ceiling = {},
                                   std::int64_t weekTokens = 0,
                                   std::optional<std::int64_t> weeklyCeiling = {}) {
    return UsageAnalytics::compute(events, weekTokens, m_clock.now(), m_calibrator, ceiling,
                                   weeklyCeiling);
  }

  test::ManualClock m_clock;
  test::MemorySettings m_settings;
  UsageCalibrator m_calibrator{m_settings, m_clock};
};

TEST_F(UsageAnalyticsTest, TheWindowIsTheLastFiveHours) {
  const auto stats = compute({event(std::chrono::hours(5), 10, true, 0.5),
                              event(std::chrono::hours(5) + std::chrono::milliseconds(1), 100),
                              event({}, 1, true, 0.25)});
  EXPECT_EQ(stats.windowTokens, 11);
  EXPECT_DOUBLE_EQ(stats.costUSD, 0.75);
}

TEST_F(UsageAnalyticsTest, TheBurnRateIsThatOfTheLastHour) {
  const auto stats =
      compute({event(std::chrono::hours(1), 60),
               event(std::chrono::hours(1) + std::chrono::milliseconds(1), 6000), event({}, 60)});
  EXPECT_DOUBLE_EQ(stats.burnPerMin, 2);
}

TEST_F(UsageAnalyticsTest, EventsWithoutAnExactTimeRaiseTheWindowButNotTheBurnRate) {
  const auto stats = compute({event({}, 600, false)});
  EXPECT_EQ(stats.windowTokens, 600);
  EXPECT_DOUBLE_EQ(stats.burnPerMin, 0);
}

TEST_F(UsageAnalyticsTest, EstimatesTheMinutesToTheCeiling) {
  // Ten a minute, and 405 are left.
  EXPECT_EQ(compute({event({}, 600)}, 1005).minutesToCeiling, 41);
}

TEST_F(UsageAnalyticsTest, ABurnRateOfExactlyOneGivesNoEstimate) {
  EXPECT_FALSE(compute({event({}, 60)}, 1000).minutesToCeiling);
  EXPECT_TRUE(compute({event({}, 61)}, 1000).minutesToCeiling);
}

TEST_F(UsageAnalyticsTest, NothingLeftGivesNoEstimate) {
  EXPECT_FALSE(compute({event({}, 600)}, 600).minutesToCeiling);
  EXPECT_FALSE(compute({event({}, 600)}, 500).minutesToCeiling);
  EXPECT_EQ(compute({event({}, 600)}, 601).minutesToCeiling, 0);
}

TEST_F(UsageAnalyticsTest, WithoutGivenCeilingsItLearnsThem) {
  const auto stats = compute({event({}, 1000)}, {}, 5000);
  EXPECT_EQ(stats.ceiling, 2000);
  EXPECT_EQ(stats.usedPct, 50);
  EXPECT_EQ(stats.weekTokens, 5000);
  EXPECT_EQ(stats.weeklyCeiling, 10000);
  EXPECT_EQ(stats.weeklyPct, 50);
  EXPECT_EQ(m_settings.object(QStringLiteral("morvo.usage.curBlockPeak")), QVariant(1000LL));
  EXPECT_EQ(m_settings.object(QStringLiteral("morvo.usage.curWeekPeak")), QVariant(5000LL));
}

TEST_F(UsageAnalyticsTest, GivenCeilingsStandAndTeachNothing) {
  const auto stats = compute({event({}, 300)}, 1000, 300, 400);
  EXPECT_EQ(stats.usedPct, 30);
  EXPECT_EQ(stats.weeklyPct, 75);
  EXPECT_FALSE(m_settings.object(QStringLiteral("morvo.usage.curBlockPeak")));
}

TEST_F(UsageAnalyticsTest, ACeilingOfNothingSaysNothing) {
  const auto stats = compute({event({}, 300)}, 0, 300, 0);
  EXPECT_EQ(stats.usedPct, 50);
  EXPECT_EQ(stats.weeklyPct, 0);
}

TEST_F(UsageAnalyticsTest, PercentagesAreRoundedAndEndAt100) {
  EXPECT_EQ(compute({event({}, 945)}, 1000).usedPct, 95);
  EXPECT_EQ(compute({event({}, 944)}, 1000).usedPct, 94);
  EXPECT_EQ(compute({event({}, 5000)}, 1000).usedPct, 100);
  EXPECT_EQ(compute({}, 1000, 5000, 1000).weeklyPct, 100);
  EXPECT_EQ(compute({event({}, -5000)}, 1000).usedPct, 0);
}

TEST_F(UsageAnalyticsTest, TheWeekDoesNotAffectTheLevel) {
  EXPECT_EQ(compute({}, 1000, 5000, 1000).level, UsageLevel::normal);
}

TEST_F(UsageAnalyticsTest, SumsEndAtTheLimits) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  const auto stats = compute({event({}, most), event({}, most)}, {}, most);
  EXPECT_EQ(stats.windowTokens, most);
  EXPECT_EQ(stats.ceiling, most);
  EXPECT_EQ(stats.usedPct, 100);
  EXPECT_EQ(compute({event({}, 100)}, most).minutesToCeiling, std::numeric_limits<int>::max());
}

struct LevelCase {
  int usedPct;
  UsageLevel level;
};

class UsageAnalyticsLevel : public testing::TestWithParam<LevelCase> {};

TEST_P(UsageAnalyticsLevel, FollowsFromThePercentage) {
  EXPECT_EQ(UsageAnalytics::level(GetParam().usedPct), GetParam().level);
}

INSTANTIATE_TEST_SUITE_P(
    Table, UsageAnalyticsLevel,
    testing::Values(LevelCase{0, UsageLevel::normal}, LevelCase{69, UsageLevel::normal},
                    LevelCase{70, UsageLevel::warn}, LevelCase{84, UsageLevel::warn},
                    LevelCase{85, UsageLevel::high}, LevelCase{94, UsageLevel::high},
                    LevelCase{95, UsageLevel::critical}, LevelCase{100, UsageLevel::critical}));

} // namespace
} // namespace morvo
