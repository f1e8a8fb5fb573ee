#include "usage/UsageCalibrator.h"
#include "platform/SettingKeys.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvo {
namespace {

class UsageCalibratorTest : public testing::Test {
protected:
  [[nodiscard]] QString text(const QString &key) const {
    return m_settings.object(key).value_or(QVariant()).toString();
  }
  void nextBlock() { m_clock.advance(std::chrono::hours(5)); }
  void nextWeek() { m_clock.advance(std::chrono::hours(7 * 24)); }

  test::ManualClock m_clock;
  test::MemorySettings m_settings;
  UsageCalibrator m_calibrator{m_settings, m_clock};
};

TEST_F(UsageCalibratorTest, TheFirstCallWithTokensIsHalfFull) {
  EXPECT_EQ(m_calibrator.ceiling(1000), 2000);
  EXPECT_EQ(m_calibrator.usedPct(1000), 50);
}

TEST_F(UsageCalibratorTest, TheFirstCallWithoutTokensIsEmpty) {
  EXPECT_EQ(m_calibrator.usedPct(0), 0);
  EXPECT_EQ(m_calibrator.ceiling(0), 1);
}

TEST_F(UsageCalibratorTest, TheCeilingIsATenthAboveTheHabitualPeak) {
  m_settings.set(SettingKeys::usageBlockPeaks, QStringLiteral("100,200,300,400"));
  EXPECT_EQ(UsageCalibrator::p90({400, 100, 300, 200}), 370);
  EXPECT_EQ(m_calibrator.ceiling(10), 407);
  EXPECT_EQ(m_calibrator.ceiling(500), 500);
  EXPECT_EQ(m_calibrator.usedPct(500), 100);
}

TEST_F(UsageCalibratorTest, NoSamplesOrOneHaveNoPlaceBetween) {
  EXPECT_EQ(UsageCalibrator::p90({}), 0);
  EXPECT_EQ(UsageCalibrator::p90({7}), 7);
  // Nine tenths of ten steps fall on a sample.
  EXPECT_EQ(UsageCalibrator::p90({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}), 9);
}

TEST_F(UsageCalibratorTest, ABlockLeavesItsPeakWhenTheNextBegins) {
  (void)m_calibrator.ceiling(100);
  (void)m_calibrator.ceiling(300);
  (void)m_calibrator.ceiling(200);
  EXPECT_EQ(text(SettingKeys::usageBlockPeaks), QString());
  nextBlock();
  (void)m_calibrator.ceiling(50);
  EXPECT_EQ(text(SettingKeys::usageBlockPeaks), QStringLiteral("300"));
  EXPECT_EQ(text(SettingKeys::usageCurBlockPeak), QStringLiteral("50"));
}

TEST_F(UsageCalibratorTest, BlocksLieOnAGridFrom1970) {
  (void)m_calibrator.ceiling(1);
  const auto now = std::chrono::floor<std::chrono::seconds>(m_clock.now()).time_since_epoch();
  EXPECT_EQ(text(SettingKeys::usageCurBlockBucket).toLongLong(), now.count() / 18000);
  (void)m_calibrator.weeklyCeiling(1);
  EXPECT_EQ(text(SettingKeys::usageCurWeekBucket).toLongLong(), now.count() / 604800);
}

TEST_F(UsageCalibratorTest, ABlockWithoutTokensLeavesNoSample) {
  (void)m_calibrator.ceiling(0);
  nextBlock();
  (void)m_calibrator.ceiling(5);
  EXPECT_EQ(text(SettingKeys::usageBlockPeaks), QString());
}

TEST_F(UsageCalibratorTest, TheOldestOfMoreThan60SamplesFallAway) {
  for (int i = 1; i <= 63; ++i) {
    (void)m_calibrator.ceiling(i);
    nextBlock();
  }
  (void)m_calibrator.ceiling(0);
  const auto samples = text(SettingKeys::usageBlockPeaks).split(u',');
  EXPECT_EQ(samples.size(), 60);
  EXPECT_EQ(samples.first(), QStringLiteral("4"));
  EXPECT_EQ(samples.last(), QStringLiteral("63"));
}

TEST_F(UsageCalibratorTest, FourBlocksAreEnough) {
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(m_calibrator.ceiling(1000), 2000);
    nextBlock();
  }
  EXPECT_EQ(m_calibrator.ceiling(1), 1100);
}

TEST_F(UsageCalibratorTest, ThreeWeeksAreEnough) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(m_calibrator.weeklyCeiling(1000), 2000);
    nextWeek();
  }
  EXPECT_EQ(m_calibrator.weeklyCeiling(1), 1100);
  EXPECT_EQ(text(SettingKeys::usageWeekPeaks), QStringLiteral("1000,1000,1000"));
  EXPECT_FALSE(m_settings.object(SettingKeys::usageBlockPeaks));
}

TEST_F(UsageCalibratorTest, ABlockMayHaveBegunBeforeTheClockWasSetBack) {
  (void)m_calibrator.ceiling(100);
  m_clock.setCalendar(m_clock.now() - std::chrono::hours(50));
  (void)m_calibrator.ceiling(20);
  EXPECT_EQ(text(SettingKeys::usageBlockPeaks), QStringLiteral("100"));
}

TEST_F(UsageCalibratorTest, OnlyWholeNumbersAreSamples) {
  m_settings.set(SettingKeys::usageBlockPeaks, QStringLiteral("a,100,,1.5, 7,100,100,100x,100"));
  EXPECT_EQ(m_calibrator.ceiling(1), 110);
}

TEST_F(UsageCalibratorTest, ANumberBeyond64BitsIsNoSample) {
  m_settings.set(SettingKeys::usageBlockPeaks,
                 QStringLiteral("100,100,9223372036854775808,99999999999999999999,100"));
  EXPECT_EQ(m_calibrator.ceiling(1), 2) << "three samples are too few";
  m_settings.set(SettingKeys::usageBlockPeaks,
                 QStringLiteral("100,100,9223372036854775808,-9223372036854775809,100,100"));
  EXPECT_EQ(m_calibrator.ceiling(1), 110);
}

TEST_F(UsageCalibratorTest, NumbersKeptAsTextAreNumbers) {
  (void)m_calibrator.ceiling(1);
  m_settings.set(SettingKeys::usageCurBlockBucket, text(SettingKeys::usageCurBlockBucket));
  m_settings.set(SettingKeys::usageCurBlockPeak, QStringLiteral("5000000000"));
  (void)m_calibrator.ceiling(2);
  nextBlock();
  (void)m_calibrator.ceiling(2);
  EXPECT_EQ(text(SettingKeys::usageBlockPeaks), QStringLiteral("5000000000"));
}

TEST_F(UsageCalibratorTest, HugeCountsEndAtTheLimits) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(m_calibrator.ceiling(most), most);
  m_settings.set(SettingKeys::usageBlockPeaks,
                 QStringLiteral("9223372036854775807,9223372036854775807,9223372036854775807,"
                                "9223372036854775807"));
  EXPECT_EQ(m_calibrator.ceiling(1), most);
  EXPECT_EQ(m_calibrator.usedPct(-5), 0);
}

} // namespace
} // namespace morvo
