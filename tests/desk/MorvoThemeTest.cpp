#include "pet/MorvoTheme.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

class MorvoThemeTest : public testing::Test {
protected:
  [[nodiscard]] QString current(const QHash<QString, QString> &environment = {}) {
    return MorvoTheme::current(Setting(m_store, Environment(environment))).id.toString();
  }
  test::MemorySettings m_store;
};

TEST_F(MorvoThemeTest, OffersItsPresetsInTheirOrder) {
  QStringList ids;
  for (const MorvoTheme::Preset &preset : MorvoTheme::presets()) {
    ids << preset.id.toString();
  }
  EXPECT_EQ(ids.join(u' '), QStringLiteral("teal blue purple pink amber"));
}

TEST_F(MorvoThemeTest, IsTealUnlessTheUserChose) { EXPECT_EQ(current(), QStringLiteral("teal")); }

TEST_F(MorvoThemeTest, TakesTheSetting) {
  m_store.set(SettingKeys::themeColor, QStringLiteral("amber"));
  EXPECT_EQ(current(), QStringLiteral("amber"));
}

TEST_F(MorvoThemeTest, TheEnvironmentOutranksTheSettingUnlessEmpty) {
  m_store.set(SettingKeys::themeColor, QStringLiteral("amber"));
  EXPECT_EQ(current({{QStringLiteral("MORVO_THEME"), QStringLiteral("pink")}}),
            QStringLiteral("pink"));
  EXPECT_EQ(current({{QStringLiteral("MORVO_THEME"), QString()}}), QStringLiteral("amber"));
}

TEST_F(MorvoThemeTest, AnUnknownNameGivesTheFirstPreset) {
  m_store.set(SettingKeys::themeColor, QStringLiteral("amber"));
  EXPECT_EQ(current({{QStringLiteral("MORVO_THEME"), QStringLiteral("mud")}}),
            QStringLiteral("teal"));
}

} // namespace
} // namespace morvo
