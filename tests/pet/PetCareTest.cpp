#include "pet/PetCare.h"

#include "platform/SettingKeys.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

class PetCareTest : public testing::Test {
protected:
  [[nodiscard]] int count(const QString &key) const { return m_setting.integer(key, 0); }

  test::ManualClock m_clock;
  test::MemorySettings m_store;
  Setting m_setting{m_store, Environment()};
  PetCare m_care{m_setting, m_clock};
};

TEST_F(PetCareTest, eachKindHasItsCounter) {
  m_care.recordPet();
  m_care.recordPet();
  m_care.recordFeed();
  m_care.recordChat();
  EXPECT_EQ(count(SettingKeys::carePetCount), 2);
  EXPECT_EQ(count(SettingKeys::careFeedCount), 1);
  EXPECT_EQ(count(SettingKeys::careChatCount), 1);
}

TEST_F(PetCareTest, theTimeOfTheLastCareIsKeptAsSecondsSince1970) {
  EXPECT_EQ(m_care.lastCareAt(), WallTime());
  m_care.recordFeed();
  EXPECT_EQ(m_care.lastCareAt(), m_clock.now());
  const std::chrono::duration<double> now = m_clock.now().time_since_epoch();
  EXPECT_EQ(m_setting.dbl(SettingKeys::careLastAt, 0), now.count());
  m_store.set(SettingKeys::careLastAt, 1e300);
  EXPECT_GT(m_care.lastCareAt(), m_clock.now());
}

struct MilestoneRow {
  int total;
  const char16_t *text;
};

class MilestoneTest : public PetCareTest, public testing::WithParamInterface<MilestoneRow> {};

TEST_P(MilestoneTest, isToldOnceAtExactlyItsTotal) {
  m_store.set(SettingKeys::careChatCount, GetParam().total - 2);
  m_care.recordFeed();
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
  m_care.recordPet();
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), QString::fromUtf16(GetParam().text));
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
  m_care.recordPet();
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(All, MilestoneTest,
                         testing::Values(MilestoneRow{10, u"渐渐熟悉"},
                                         MilestoneRow{30, u"成了伴宠"},
                                         MilestoneRow{100, u"老搭档"}));

TEST_F(PetCareTest, theFirstCareEverIsAMilestone) {
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
  m_care.recordPet();
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), QStringLiteral("第一次互动"));
}

TEST_F(PetCareTest, aMilestonePassedByFeedingIsSkippedForGood) {
  m_store.set(SettingKeys::carePetCount, 9);
  m_care.recordFeed();
  m_care.recordPet();
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
}

TEST_F(PetCareTest, countersStopAtTheirEnd) {
  m_store.set(SettingKeys::carePetCount, 2147483647);
  m_store.set(SettingKeys::careFeedCount, 2147483647);
  m_care.recordPet();
  EXPECT_EQ(count(SettingKeys::carePetCount), 2147483647);
  EXPECT_EQ(m_care.consumeMilestoneIfAny(), std::nullopt);
}

} // namespace
} // namespace morvo
