#include "usage/UsageCalibrator.h"
#include "platform/SettingKeys.h"
#include "platform/qt/SettingsFile.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <QFile>
#include <QTemporaryDir>

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

TEST_F(UsageCalibratorTest, BetweenTwoSamplesTheValueIsCutToAWholeNumber) {
  EXPECT_EQ(UsageCalibrator::p90({1, 2}), 1);
  m_settings.set(SettingKeys::usageBlockPeaks, QStringLiteral("5,5,5,5"));
  EXPECT_EQ(m_calibrator.ceiling(1), 5) << "5.5 is cut";
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

TEST_F(UsageCalibratorTest, PeaksThatSomebodyWroteIntoTheFileByHandAreSamples) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("settings.ini"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("[General]\nmorvo.usage.blockPeaks=100,200,300,400\n");
  file.close();
  SettingsFile settings(path);
  UsageCalibrator calibrator(settings, m_clock);
  EXPECT_EQ(calibrator.ceiling(10), 407);
  nextBlock();
  EXPECT_EQ(calibrator.ceiling(10), 396);
  EXPECT_EQ(settings.object(SettingKeys::usageBlockPeaks).value_or(QVariant()).toString(),
            QStringLiteral("100,200,300,400,10"));
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

/// Settings of a process that dies once it has written so many times.
class TornSettings final : public SettingsStore {
public:
  [[nodiscard]] std::optional<QVariant> object(const QString &key) const override {
    return m_kept.object(key);
  }
  void set(const QString &key, const QVariant &value) override {
    if (countsWrite()) {
      m_kept.set(key, value);
    }
  }
  void remove(const QString &key) override {
    if (countsWrite()) {
      m_kept.remove(key);
    }
  }
  void atOnce(const std::function<void()> &change) override {
    const test::MemorySettings before = m_kept;
    m_isAtOnce = true;
    change();
    m_isAtOnce = false;
    if (!countsWrite()) {
      m_kept = before;
    }
  }

  /// A negative number is never reached.
  int writesLeft = -1;

private:
  bool countsWrite() {
    if (m_isAtOnce || writesLeft == 0) {
      return m_isAtOnce;
    }
    --writesLeft;
    return true;
  }

  test::MemorySettings m_kept;
  bool m_isAtOnce = false;
};

class TornUsageCalibrator : public testing::TestWithParam<int> {};

TEST_P(TornUsageCalibrator, LeavesEachBlockWithOnePeak) {
  test::ManualClock clock;
  TornSettings settings;
  const auto capture = [&](std::int64_t count) {
    (void)UsageCalibrator(settings, clock).ceiling(count);
  };
  capture(300);
  clock.advance(std::chrono::hours(5));
  settings.writesLeft = GetParam();
  capture(50);
  settings.writesLeft = -1;
  capture(40);
  clock.advance(std::chrono::hours(5));
  capture(0);
  const QString peaks =
      settings.object(SettingKeys::usageBlockPeaks).value_or(QVariant()).toString();
  EXPECT_TRUE(peaks == QStringLiteral("300,50") || peaks == QStringLiteral("300,40"))
      << peaks.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Writes, TornUsageCalibrator, testing::Range(0, 5));

} // namespace
} // namespace morvo
