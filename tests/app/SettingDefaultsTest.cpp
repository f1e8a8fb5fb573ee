#include "app/StoreFixture.h"

#include "companion/Personas.h"
#include "pet/Growth.h"
#include "pet/MorvoTheme.h"
#include "pet/PetCare.h"
#include "platform/Appearance.h"

#include <QDateTime>

namespace morvo {
namespace {

/// What the program does under settings that are written, or never were, by the names under which
/// they stand in the user's file.
class SettingDefaultsTest : public test::StoreFixture {
public:
  [[nodiscard]] bool notifies() {
    start();
    sendPermission(QStringLiteral("1"), QStringLiteral("Bash"), QStringLiteral("ls"));
    return !m_notifications.shown.isEmpty();
  }
  [[nodiscard]] bool takesEvents() {
    start();
    sendAgent(QStringLiteral("done"));
    return m_store->recentDone().has_value();
  }
  [[nodiscard]] bool scansTheFleet() {
    start();
    return m_fleet.scans > 0;
  }
  [[nodiscard]] bool capturesUsage() {
    start();
    return m_usage.captures > 0;
  }
  [[nodiscard]] bool speaks() {
    start();
    sendAgent(QStringLiteral("done"));
    return !m_speech.spoken.isEmpty();
  }
  [[nodiscard]] bool showsThePet() {
    start();
    return m_body.visibility == QList<bool>{true};
  }
  [[nodiscard]] bool keepsTheGrowth() {
    set(QStringLiteral("morvo.growth.xp"), 500);
    start();
    return m_store->growth().xp == 500;
  }
  [[nodiscard]] bool passesTheMilestoneOver() {
    set(QStringLiteral("morvo.care.petCount"), 10);
    return !PetCare(setting(), m_clock).consumeMilestoneIfAny().has_value();
  }

protected:
  [[nodiscard]] Setting setting() { return {m_settings, Environment(m_environment)}; }
};

struct Switch {
  const char *name;
  QString key;
  bool standard;
  bool (SettingDefaultsTest::*isOn)();
};

class SwitchTest : public SettingDefaultsTest, public testing::WithParamInterface<Switch> {
protected:
  [[nodiscard]] bool isOn() { return (this->*GetParam().isOn)(); }
};

TEST_P(SwitchTest, NeverWrittenActsAsItsDefault) { EXPECT_EQ(isOn(), GetParam().standard); }

TEST_P(SwitchTest, WrittenTrueIsOn) {
  set(GetParam().key, true);
  EXPECT_TRUE(isOn());
}

TEST_P(SwitchTest, WrittenFalseIsOff) {
  set(GetParam().key, false);
  EXPECT_FALSE(isOn());
}

INSTANTIATE_TEST_SUITE_P(
    Switches, SwitchTest,
    testing::Values(Switch{"Notifications", QStringLiteral("morvo.set.notifications"), true,
                           &SettingDefaultsTest::notifies},
                    Switch{"PreciseEvents", QStringLiteral("morvo.set.preciseEvents"), true,
                           &SettingDefaultsTest::takesEvents},
                    Switch{"Fleet", QStringLiteral("morvo.set.fleet"), false,
                           &SettingDefaultsTest::scansTheFleet},
                    Switch{"CaptureUsage", QStringLiteral("morvo.set.captureUsage"), false,
                           &SettingDefaultsTest::capturesUsage},
                    Switch{"Voice", QStringLiteral("morvo.set.voice"), true,
                           &SettingDefaultsTest::speaks},
                    Switch{"DesktopPet", QStringLiteral("morvo.set.desktopPet"), true,
                           &SettingDefaultsTest::showsThePet},
                    Switch{"GrowthWiped", QStringLiteral("morvo.growth.wiped.v2"), false,
                           &SettingDefaultsTest::keepsTheGrowth},
                    Switch{"CareMilestone", QStringLiteral("morvo.care.milestone.10"), false,
                           &SettingDefaultsTest::passesTheMilestoneOver}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(SettingDefaultsTest, TheThemeIsTeal) {
  EXPECT_EQ(MorvoTheme::current(setting()).id, u"teal");
  set(QStringLiteral("morvo.set.themeColor"), QStringLiteral("pink"));
  EXPECT_EQ(MorvoTheme::current(setting()).id, u"pink");
}

TEST_F(SettingDefaultsTest, TheAppearanceIsDark) {
  EXPECT_EQ(AppearanceController::wanted(setting()), Appearance::dark);
  set(QStringLiteral("morvo.set.appearance"), QStringLiteral("light"));
  EXPECT_EQ(AppearanceController::wanted(setting()), Appearance::light);
}

TEST_F(SettingDefaultsTest, NothingIsDoneToday) {
  const auto today =
      QDateTime::fromMSecsSinceEpoch(m_clock.now().time_since_epoch().count()).date();
  start();
  EXPECT_EQ(m_store->doneToday(), 0);
  set(QStringLiteral("morvo.done.count"), 3);
  EXPECT_EQ(m_store->doneToday(), 0);
  set(QStringLiteral("morvo.done.date"), today.toString(Qt::ISODate));
  EXPECT_EQ(m_store->doneToday(), 3);
  m_settings.remove(QStringLiteral("morvo.done.count"));
  EXPECT_EQ(m_store->doneToday(), 0);
}

TEST_F(SettingDefaultsTest, GrowthBeginsAtZero) {
  EXPECT_EQ(Growth::state(setting(), 0).xp, 0);
  EXPECT_EQ(Growth::state(setting(), 0).streak, 0);
  set(QStringLiteral("morvo.growth.xp"), 12);
  set(QStringLiteral("morvo.growth.streak"), 3);
  EXPECT_EQ(Growth::state(setting(), 0).xp, 12);
  EXPECT_EQ(Growth::state(setting(), 0).streak, 3);
}

TEST_F(SettingDefaultsTest, CareIsCountedFromZero) {
  PetCare care(setting(), m_clock);
  care.recordPet();
  care.recordFeed();
  care.recordFeed();
  care.recordChat();
  EXPECT_EQ(setting().integer(QStringLiteral("morvo.care.petCount"), -1), 1);
  EXPECT_EQ(setting().integer(QStringLiteral("morvo.care.feedCount"), -1), 2);
  EXPECT_EQ(setting().integer(QStringLiteral("morvo.care.chatCount"), -1), 1);
}

TEST_F(SettingDefaultsTest, CareWasNeverGiven) {
  const PetCare care(setting(), m_clock);
  EXPECT_EQ(care.lastCareAt(), WallTime());
  set(QStringLiteral("morvo.care.lastAt"), 86400.5);
  EXPECT_EQ(care.lastCareAt(), WallTime(std::chrono::milliseconds(86400500)));
}

TEST_F(SettingDefaultsTest, TheFirstPersonaIsInPlay) {
  EXPECT_EQ(Personas::selected(m_settings), Personas::morvo());
  set(QStringLiteral("morvo.persona.selectedId"), Personas::anime().id);
  EXPECT_EQ(Personas::selected(m_settings), Personas::anime());
}

} // namespace
} // namespace morvo
