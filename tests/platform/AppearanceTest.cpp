#include "platform/Appearance.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

class AppearanceTest : public testing::Test {
protected:
  [[nodiscard]] Appearance wanted(const Environment &environment = {}) {
    return AppearanceController::wanted(Setting(m_store, environment));
  }
  static Environment variable(const QString &value) {
    return Environment{{{QStringLiteral("MORVO_APPEARANCE"), value}}};
  }

  test::MemorySettings m_store;
};

TEST_F(AppearanceTest, IsDarkByDefault) { EXPECT_EQ(wanted(), Appearance::dark); }

TEST_F(AppearanceTest, TheSettingNamesIt) {
  m_store.set(SettingKeys::appearance, QStringLiteral("light"));
  EXPECT_EQ(wanted(), Appearance::light);
  m_store.set(SettingKeys::appearance, QStringLiteral("dark"));
  EXPECT_EQ(wanted(), Appearance::dark);
}

TEST_F(AppearanceTest, AnyOtherSettingFollowsTheSystem) {
  for (const QString &text : {QStringLiteral("system"), QStringLiteral("Dark"), QString()}) {
    m_store.set(SettingKeys::appearance, text);
    EXPECT_EQ(wanted(), Appearance::followSystem);
  }
}

TEST_F(AppearanceTest, TheVariableWinsOverTheSetting) {
  m_store.set(SettingKeys::appearance, QStringLiteral("dark"));
  EXPECT_EQ(wanted(variable(QStringLiteral("light"))), Appearance::light);
}

TEST_F(AppearanceTest, AnUnknownWordInTheVariableFollowsTheSystemWhateverTheSettingSays) {
  m_store.set(SettingKeys::appearance, QStringLiteral("dark"));
  EXPECT_EQ(wanted(variable(QStringLiteral("sepia"))), Appearance::followSystem);
  EXPECT_EQ(wanted(variable(QString())), Appearance::followSystem);
}

} // namespace
} // namespace morvo
