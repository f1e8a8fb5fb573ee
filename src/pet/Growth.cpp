#include "pet/Growth.h"

#include "platform/SettingKeys.h"

#include <array>

namespace morvo::Growth {
namespace {

struct Stage {
  int threshold = 0;
  QStringView title;
};

constexpr std::array stages{Stage{0, u"幼年期"}, Stage{100, u"成长期"}, Stage{300, u"成熟期"},
                            Stage{700, u"智者期"}, Stage{1500, u"传奇期"}};
constexpr int dailyGoal = 3;

} // namespace

void migrateResetIfNeeded(const Setting &setting) {
  if (setting.boolean(SettingKeys::growthWiped, false)) {
    return;
  }
  SettingsStore &store = setting.store();
  store.remove(SettingKeys::growthXp);
  store.remove(SettingKeys::growthStreak);
  store.remove(SettingKeys::growthLastActiveDay);
  store.set(SettingKeys::growthWiped, true);
}

GrowthState state(const Setting &setting, int /*dailyDone*/) {
  const int xp = setting.integer(SettingKeys::growthXp, 0);
  std::size_t index = 0;
  while (index + 1 < stages.size() && xp >= stages.at(index + 1).threshold) {
    ++index;
  }
  const Stage &stage = stages.at(index);
  const bool atTop = index + 1 == stages.size();
  return {.xp = xp,
          .stage = static_cast<int>(index) + 1,
          .title = stage.title.toString(),
          .streak = setting.integer(SettingKeys::growthStreak, 0),
          .dailyDone = 0,
          .dailyGoal = dailyGoal,
          .xpInStage = xp - stage.threshold,
          .xpStageSpan = atTop ? 0 : stages.at(index + 1).threshold - stage.threshold,
          .atMax = atTop};
}

} // namespace morvo::Growth
