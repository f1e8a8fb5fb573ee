#include "pet/PetSceneFixture.h"

#include "pet/BehaviorContext.h"
#include "platform/SettingKeys.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

const QString idle = QStringLiteral("idle");
const QString dance = QStringLiteral("dance");

class PetSceneDirectorTest : public test::PetSceneFixture {
protected:
  void choose(PetBehaviorMode mode) { m_settings.set(SettingKeys::behaviorMode, rawValue(mode)); }
  void countStrolls() {
    m_scene.setStrollHandler([this] { ++m_strolls; });
  }
  /// Time passes as it does while somebody looks.
  void watch(double forSeconds) {
    for (double time = 0; time < forSeconds; ++time) {
      pass(1);
      if (m_scene.lastAutonomous() != m_seen) {
        m_seen = m_scene.lastAutonomous();
        m_acts.append(m_seen.value_or(QString()));
      }
    }
  }

  int m_strolls = 0;
  std::optional<QString> m_seen;
  QStringList m_acts;
};

TEST_F(PetSceneDirectorTest, thePetActsByItselfHalfAMinuteAfterItIsShown) {
  frames(idle, 2);
  present();
  pass(29.9);
  EXPECT_FALSE(m_scene.lastAutonomous());
  pass(0.1);
  EXPECT_TRUE(m_scene.lastAutonomous());
  EXPECT_FALSE(m_scene.lastPerformanceAt());
}

TEST_F(PetSceneDirectorTest, itActsAgainAfterTheMoodsPace) {
  frames(idle, 2);
  present();
  watch(30);
  ASSERT_EQ(m_acts.size(), 1);
  watch(99);
  EXPECT_EQ(m_acts.size(), 1);
  watch(102);
  EXPECT_EQ(m_acts.size(), 2);
  watch(20000);
  EXPECT_NEAR(static_cast<double>(m_acts.size()), 20231 / 150.0, 12);
}

TEST_F(PetSceneDirectorTest, aGestureIsCarriedOutOnTheBody) {
  frames(idle, 2);
  present();
  pass(30);
  EXPECT_TRUE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGesture) ||
              runs(m_scene.breathNode(), PetScene::Keys::lifeGesture));
}

TEST_F(PetSceneDirectorTest, aQuietPetRests) {
  frames(idle, 2);
  present();
  m_scene.setQuietMode(true);
  EXPECT_TRUE(m_scene.isQuiet());
  watch(3000);
  EXPECT_TRUE(m_acts.isEmpty());
  m_scene.setQuietMode(false);
  watch(200);
  EXPECT_FALSE(m_acts.isEmpty());
}

TEST_F(PetSceneDirectorTest, aStickyLoopHoldsTheBody) {
  frames(idle, 2);
  frames(QStringLiteral("code"), 2);
  present();
  ASSERT_TRUE(m_scene.react(QStringLiteral("code")));
  watch(3000);
  EXPECT_TRUE(m_acts.isEmpty());
}

TEST_F(PetSceneDirectorTest, thePacksActionsArePlayed) {
  frames(idle, 2);
  frames(dance, 24);
  choose(PetBehaviorMode::playful);
  present(R"({"actions":[{"id":"boogie","frameSet":"dance"}],"autonomousActions":["boogie"]})");
  while (m_acts.size() < 100 && !m_acts.contains(dance)) {
    watch(1);
  }
  ASSERT_EQ(m_acts.last(), dance);
  EXPECT_TRUE(m_scene.isPerforming());
  EXPECT_EQ(m_scene.lastPerformanceAt(), m_clock.instant());
}

TEST_F(PetSceneDirectorTest, thePetStrollsWhereItCan) {
  frames(idle, 2);
  choose(PetBehaviorMode::playful);
  present();
  countStrolls();
  while (m_strolls == 0 && m_acts.size() < 100) {
    watch(1);
  }
  EXPECT_EQ(m_strolls, 1);
  EXPECT_EQ(m_scene.lastAutonomous(), QStringLiteral("stroll"));
  EXPECT_EQ(m_scene.lastPerformanceAt(), m_clock.instant());
}

TEST_F(PetSceneDirectorTest, aWalkThatBeginsWithinTheDecisionIsPlayed) {
  frames(idle, 2);
  choose(PetBehaviorMode::playful);
  present();
  m_scene.setStrollHandler([this] { m_scene.beginGait(-1); });
  while (!m_scene.isGaitActive() && m_acts.size() < 100) {
    watch(1);
  }
  ASSERT_TRUE(m_scene.isGaitActive());
  EXPECT_TRUE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGait));
  EXPECT_FALSE(m_scene.directorContext().strollAvailable);
}

TEST_F(PetSceneDirectorTest, atRestItNeverStrolls) {
  frames(idle, 2);
  choose(PetBehaviorMode::rest);
  present();
  countStrolls();
  watch(50'000);
  EXPECT_EQ(m_strolls, 0);
  EXPECT_GT(m_acts.size(), 50);
}

TEST_F(PetSceneDirectorTest, theDirectorIsToldTheStateOfTheScene) {
  frames(idle, 2);
  frames(dance, 24);
  present();
  BehaviorContext context = m_scene.directorContext();
  EXPECT_EQ(context.mood, QStringLiteral("calm"));
  EXPECT_EQ(context.mode, PetBehaviorMode::natural);
  EXPECT_FALSE(context.performing || context.quiet || context.stickyLoopActive ||
               context.strollAvailable || context.lastAutonomous);
  EXPECT_TRUE(std::isinf(context.secondsSincePerformance));

  choose(PetBehaviorMode::rest);
  countStrolls();
  m_scene.setQuietMode(true);
  m_scene.setMood(QStringLiteral("happy"));
  m_scene.perform(ProceduralGesture::sway);
  ASSERT_TRUE(m_scene.react(dance));
  pass(0.5);
  context = m_scene.directorContext();
  EXPECT_EQ(context.mood, QStringLiteral("happy"));
  EXPECT_EQ(context.mode, PetBehaviorMode::rest);
  EXPECT_TRUE(context.performing && context.quiet && context.strollAvailable);
  EXPECT_EQ(context.lastAutonomous, QStringLiteral("sway"));
  EXPECT_DOUBLE_EQ(context.secondsSincePerformance, 0.5);
  ASSERT_TRUE(m_scene.react(idle));
  frames(QStringLiteral("code"), 2);
  m_sprites.setPersona(pet);
  ASSERT_TRUE(m_scene.react(QStringLiteral("code")));
  EXPECT_TRUE(m_scene.directorContext().stickyLoopActive);
  m_scene.beginGait(1);
  EXPECT_FALSE(m_scene.directorContext().strollAvailable);
}

TEST_F(PetSceneDirectorTest, aNewScheduleTakesThePlaceOfThePendingOne) {
  frames(idle, 2);
  present();
  pass(10);
  m_scene.scheduleDirector(seconds(1));
  pass(1);
  EXPECT_TRUE(m_scene.lastAutonomous());
  m_scene.setPersona(pet);
  ASSERT_FALSE(m_scene.lastAutonomous());
  pass(60);
  EXPECT_FALSE(m_scene.lastAutonomous());
}

TEST_F(PetSceneDirectorTest, whatNobodySawIsNotMadeUpFor) {
  frames(idle, 2);
  choose(PetBehaviorMode::playful);
  present();
  countStrolls();
  pass(7 * 24 * 3600.0);
  EXPECT_FALSE(m_scene.lastAutonomous());
  EXPECT_EQ(m_strolls, 0);
  pass(29.9);
  EXPECT_FALSE(m_scene.lastAutonomous());
  pass(0.1);
  EXPECT_TRUE(m_scene.lastAutonomous());
}

TEST_F(PetSceneDirectorTest, aScheduleBeforeThePetIsPresentedIsNone) {
  frames(idle, 2);
  m_scene.scheduleDirector(seconds(1));
  pass(5);
  present();
  pass(29);
  EXPECT_FALSE(m_scene.lastAutonomous());
}

TEST_F(PetSceneDirectorTest, updateLetsTimePassFromThePresentationOn) {
  frames(idle, 4);
  m_scene.update(5);
  pass(3);
  present();
  m_scene.update(2.0 / 16 + 0.001);
  EXPECT_EQ(shown(), QStringLiteral("idle/3"));
  m_scene.update(0);
  m_scene.update(-1);
  m_scene.update(std::nan(""));
  EXPECT_EQ(shown(), QStringLiteral("idle/3"));
  m_scene.update(1e300);
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
}

} // namespace
} // namespace morvo
