#include "pet/Growth.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

struct StageRow {
  int xp;
  int stage;
  const char16_t *title;
  int inStage;
  int span;
  bool atMax;
};

class GrowthStageTest : public testing::TestWithParam<StageRow> {};

TEST_P(GrowthStageTest, followsTheExperience) {
  test::MemorySettings store;
  store.set(SettingKeys::growthXp, GetParam().xp);
  const GrowthState state = Growth::state(Setting(store, Environment()), 2);
  EXPECT_EQ(state,
            (GrowthState{GetParam().xp, GetParam().stage, QString::fromUtf16(GetParam().title), 0,
                         0, 3, GetParam().inStage, GetParam().span, GetParam().atMax}));
}

INSTANTIATE_TEST_SUITE_P(All, GrowthStageTest,
                         testing::Values(StageRow{-7, 1, u"幼年期", -7, 100, false},
                                         StageRow{0, 1, u"幼年期", 0, 100, false},
                                         StageRow{99, 1, u"幼年期", 99, 100, false},
                                         StageRow{100, 2, u"成长期", 0, 200, false},
                                         StageRow{299, 2, u"成长期", 199, 200, false},
                                         StageRow{300, 3, u"成熟期", 0, 400, false},
                                         StageRow{699, 3, u"成熟期", 399, 400, false},
                                         StageRow{700, 4, u"智者期", 0, 800, false},
                                         StageRow{1499, 4, u"智者期", 799, 800, false},
                                         StageRow{1500, 5, u"传奇期", 0, 0, true},
                                         StageRow{2147483647, 5, u"传奇期", 2147482147, 0, true}));

TEST(GrowthTest, theWipeRunsOnce) {
  test::MemorySettings store;
  const Setting setting(store, Environment());
  store.set(SettingKeys::growthXp, 500);
  store.set(SettingKeys::growthStreak, 4);
  store.set(SettingKeys::growthLastActiveDay, QStringLiteral("2024-01-01"));
  store.set(SettingKeys::carePetCount, 9);
  Growth::migrateResetIfNeeded(setting);
  EXPECT_FALSE(store.object(SettingKeys::growthXp));
  EXPECT_FALSE(store.object(SettingKeys::growthStreak));
  EXPECT_FALSE(store.object(SettingKeys::growthLastActiveDay));
  EXPECT_EQ(setting.integer(SettingKeys::carePetCount, 0), 9);
  EXPECT_EQ(Growth::state(setting, 0).stage, 1);

  store.set(SettingKeys::growthXp, 120);
  store.set(SettingKeys::growthStreak, 2);
  Growth::migrateResetIfNeeded(setting);
  EXPECT_EQ(Growth::state(setting, 0).xp, 120);
  EXPECT_EQ(Growth::state(setting, 0).streak, 2);
}

} // namespace
} // namespace morvo
