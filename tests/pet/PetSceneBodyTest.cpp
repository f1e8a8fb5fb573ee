#include "pet/PetSceneFixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace morvo {
namespace {

using PetSceneBodyTest = test::PetSceneFixture;

const QString idle = QStringLiteral("idle");
const QString celebrate = QStringLiteral("celebrate");

struct TiltRow {
  double velocity;
  double tilt;
};

class CarriedTiltTest : public PetSceneBodyTest, public testing::WithParamInterface<TiltRow> {};

TEST_P(CarriedTiltTest, leansAgainstTheWayWithinItsLimit) {
  frames(idle, 2);
  present();
  m_scene.setCarried(true, GetParam().velocity);
  pass(0.12);
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), GetParam().tilt);
  EXPECT_DOUBLE_EQ(m_scene.breathNode().yScale(), 0.94);
  EXPECT_TRUE(m_scene.isCarried());
}

INSTANTIATE_TEST_SUITE_P(All, CarriedTiltTest,
                         testing::Values(TiltRow{0, 0}, TiltRow{160, -0.1}, TiltRow{-160, 0.1},
                                         TiltRow{448, -0.28}, TiltRow{5000, -0.28},
                                         TiltRow{-5000, 0.28}, TiltRow{INFINITY, -0.28},
                                         TiltRow{std::nan(""), 0}));

TEST_F(PetSceneBodyTest, theCarriedPetPlaysItsFramesFromTheFirstMomentOnly) {
  frames(idle, 2);
  frames(QStringLiteral("dangle"), 24);
  present(R"({"actions":[{"id":"dangle","tags":["carried"]}]})");
  m_scene.setCarried(true, 0);
  EXPECT_EQ(shown(), QStringLiteral("dangle/1"));
  pass(0.5);
  EXPECT_EQ(shown(), QStringLiteral("dangle/13"));
  m_scene.setCarried(true, 300);
  EXPECT_EQ(shown(), QStringLiteral("dangle/13"));
  m_scene.setCarried(false, 0);
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
  EXPECT_FALSE(m_scene.isCarried());
}

struct HintRow {
  const char *word;
  bool walks;
  bool isCarried;
  bool flies;
};

class HintTest : public PetSceneBodyTest, public testing::WithParamInterface<HintRow> {};

TEST_P(HintTest, findsTheFramesOfWhatHappensToTheBody) {
  frames(idle, 2);
  frames(QStringLiteral("motion-1"), 2);
  present(QByteArray(R"({"actions":[{"id":"a","frameSet":"motion-1","tags":["a )") +
          GetParam().word + R"("]}]})");
  const auto played = [this] { return shown().startsWith(u"motion-1/"); };
  m_scene.beginGait(1);
  EXPECT_EQ(played(), GetParam().walks);
  m_scene.endGait();
  m_scene.setCarried(true, 0);
  EXPECT_EQ(played(), GetParam().isCarried);
  m_scene.setCarried(false, 0);
  m_scene.setTossed(true);
  EXPECT_EQ(played(), GetParam().flies);
}

INSTANTIATE_TEST_SUITE_P(
    All, HintTest,
    testing::Values(HintRow{"walk", true, false, false}, HintRow{"run", true, false, false},
                    HintRow{"move", true, false, false}, HintRow{"stroll", true, false, false},
                    HintRow{"trot", true, false, false}, HintRow{"走", true, false, false},
                    HintRow{"跑", true, false, false}, HintRow{"散步", true, false, false},
                    HintRow{"carried", false, true, false}, HintRow{"held", false, true, false},
                    HintRow{"grab", false, true, false}, HintRow{"被拎", false, true, false},
                    HintRow{"拎起", false, true, false}, HintRow{"tossed", false, false, true},
                    HintRow{"dizzy", false, false, true}, HintRow{"thrown", false, false, true},
                    HintRow{"fly", false, false, true}, HintRow{"眩晕", false, false, true},
                    HintRow{"甩飞", false, false, true}, HintRow{"jump", false, false, false}));

TEST_F(PetSceneBodyTest, aSinglePictureOfTheCarriedPetLeavesTheLoopRunning) {
  frames(idle, 24);
  frames(QStringLiteral("held"), 1);
  present(R"({"actions":[{"id":"held"}]})");
  pass(0.25 + 0.001);
  m_scene.setCarried(true, -160);
  pass(0.25);
  EXPECT_EQ(shown(), QStringLiteral("idle/9"));
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), 0.1);
  EXPECT_LT(m_scene.breathNode().yScale(), 1);
}

TEST_F(PetSceneBodyTest, lettingGoBringsThePetUpright) {
  frames(idle, 2);
  present();
  m_scene.setCarried(true, 5000);
  pass(0.2);
  m_scene.setCarried(false, 0);
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeCarry));
  EXPECT_FALSE(runs(m_scene.breathNode(), PetScene::Keys::lifeCarrySquash));
  pass(0.15);
  EXPECT_NEAR(m_scene.lifeNode().rotation(), -0.14, 1e-9);
  pass(0.15);
  EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
  pass(5);
  EXPECT_NEAR(extreme(5, [this] { return m_scene.breathNode().yScale(); }), 1.016, 1e-5);
}

TEST_F(PetSceneBodyTest, tiltAndSquashHoldWhileThePetIsCarriedThoughItSways) {
  frames(idle, 2);
  present(R"({"motion":{"style":"floaty","swayDegrees":6,"breathAmplitude":0.05}})");
  m_scene.setQuietMode(true);
  pass(3);
  m_scene.setCarried(true, 320);
  pass(0.12);
  for (int step = 0; step < 500; ++step) {
    pass(0.31);
    ASSERT_DOUBLE_EQ(m_scene.lifeNode().rotation(), -0.2);
    ASSERT_DOUBLE_EQ(m_scene.breathNode().yScale(), 0.94);
  }
  m_scene.setCarried(false, 0);
  pass(0.3);
  EXPECT_NEAR(extreme(20, [this] { return degrees(m_scene.lifeNode()); }), 6, 0.01);
}

struct NewLifeRow {
  const char *motion;
  double sway;
};

class NewLifeTest : public PetSceneBodyTest, public testing::WithParamInterface<NewLifeRow> {};

TEST_P(NewLifeTest, leavesTheCarriedPetTiltedAndSquashed) {
  frames(idle, 2);
  present(GetParam().motion);
  m_scene.setCarried(true, 320);
  pass(0.5);
  m_scene.setMood(QStringLiteral("happy"));
  pass(0.12);
  for (int step = 0; step < 40; ++step) {
    ASSERT_DOUBLE_EQ(m_scene.lifeNode().rotation(), -0.2) << step;
    ASSERT_DOUBLE_EQ(m_scene.breathNode().yScale(), 0.94) << step;
    pass(0.07);
  }
  m_scene.setCarried(false, 0);
  EXPECT_NEAR(extreme(20, [this] { return degrees(m_scene.lifeNode()); }), GetParam().sway, 0.01);
}

TEST_P(NewLifeTest, leavesTheWalkingPetLeaning) {
  frames(idle, 2);
  present(GetParam().motion);
  m_scene.beginGait(1);
  pass(0.5);
  m_scene.setMood(QStringLiteral("happy"));
  pass(0.25);
  for (int step = 0; step < 40; ++step) {
    ASSERT_NEAR(degrees(m_scene.lifeNode()), -4, 1e-9) << step;
    pass(0.07);
  }
}

TEST_P(NewLifeTest, leavesTheFlyingPetWobbling) {
  frames(idle, 2);
  present(GetParam().motion);
  m_scene.setTossed(true);
  pass(0.5);
  m_scene.setMood(QStringLiteral("happy"));
  pass(0.12);
  for (int step = 0; step < 10; ++step) {
    ASSERT_NEAR(m_scene.lifeNode().rotation(), step % 2 == 0 ? 0.22 : -0.22, 1e-9) << step;
    pass(0.12);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, NewLifeTest,
    testing::Values(NewLifeRow{R"({"motion":{"style":"floaty","swayDegrees":6}})", 6},
                    NewLifeRow{R"({"motion":{"swayDegrees":0}})", 0}));

TEST_F(PetSceneBodyTest, theLeanOfAWalkHoldsThoughThePetSways) {
  frames(idle, 2);
  present(R"({"motion":{"style":"floaty"}})");
  m_scene.beginGait(1);
  for (int step = 0; step < 100; ++step) {
    pass(0.27);
    ASSERT_NEAR(degrees(m_scene.lifeNode()), -4, 1e-9);
  }
}

TEST_F(PetSceneBodyTest, gripsThatFollowEachOtherLeaveNoTiltBehind) {
  frames(idle, 2);
  present();
  for (int round = 0; round < 20; ++round) {
    m_scene.setCarried(true, round % 2 == 0 ? 4000 : -4000);
    pass(0.05);
    m_scene.setCarried(false, 0);
    pass(0.05);
    m_scene.setCarried(true, 100);
    pass(0.2);
    EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), -0.0625);
    EXPECT_DOUBLE_EQ(m_scene.breathNode().yScale(), 0.94);
    m_scene.setCarried(false, 0);
    pass(0.3);
    EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
  }
}

TEST_F(PetSceneBodyTest, beingGrabbedEndsAGestureAndPutsThePetInItsPlace) {
  frames(idle, 2);
  present();
  m_scene.perform(ProceduralGesture::bob);
  pass(0.4);
  ASSERT_GT(m_scene.lifeNode().position().y(), m_scene.lifeBasePosition().y());
  m_scene.setCarried(true, 0);
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGesture));
  EXPECT_EQ(m_scene.lifeNode().position(), m_scene.lifeBasePosition());
}

TEST_F(PetSceneBodyTest, aFlightWithoutFramesWobbles) {
  frames(idle, 2);
  present();
  m_scene.setTossed(true);
  EXPECT_TRUE(m_scene.isTossed());
  pass(0.12);
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), 0.22);
  pass(0.12);
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), -0.22);
  EXPECT_TRUE(shown().startsWith(u"idle/"));
}

TEST_F(PetSceneBodyTest, aFlightWithFramesPlaysThemInstead) {
  frames(idle, 2);
  frames(QStringLiteral("spin"), 3);
  present(R"({"actions":[{"id":"spin","tags":["dizzy"]}]})");
  m_scene.setTossed(true);
  EXPECT_EQ(shown(), QStringLiteral("spin/1"));
  EXPECT_EQ(m_scene.frameInterval(), seconds(1.0 / 24));
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeDizzy));
}

TEST_F(PetSceneBodyTest, aSecondTossChangesNothing) {
  frames(idle, 2);
  present();
  m_scene.setTossed(true);
  pass(0.06);
  m_scene.setTossed(true);
  pass(0.06);
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().rotation(), 0.22);
}

TEST_F(PetSceneBodyTest, theLandingSquashesAndLifeGoesOn) {
  frames(idle, 2);
  present();
  m_scene.setTossed(true);
  pass(0.12);
  m_scene.setTossed(false);
  EXPECT_FALSE(m_scene.isTossed());
  pass(0.09);
  EXPECT_DOUBLE_EQ(m_scene.breathNode().yScale(), 0.86);
  pass(0.12);
  EXPECT_DOUBLE_EQ(m_scene.breathNode().yScale(), 1.05);
  EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
  pass(0.15);
  EXPECT_NEAR(m_scene.breathNode().yScale(), 1, 1e-9);
  pass(3.4 * 0.45);
  EXPECT_NEAR(m_scene.breathNode().yScale(), 1.016, 1e-9);
}

TEST_F(PetSceneBodyTest, landingWithoutAFlightChangesNothing) {
  frames(idle, 4);
  present();
  pass(2.0 / 16 + 0.001);
  m_scene.setTossed(false);
  EXPECT_EQ(shown(), QStringLiteral("idle/3"));
  EXPECT_FALSE(runs(m_scene.breathNode(), PetScene::Keys::lifeUnsquash));
}

TEST_F(PetSceneBodyTest, aWalkWithFramesPlaysThem) {
  frames(idle, 2);
  frames(QStringLiteral("trot"), 3);
  present(R"({"actions":[{"id":"trot"}]})");
  m_scene.beginGait(3);
  EXPECT_TRUE(m_scene.isGaitActive());
  EXPECT_EQ(shown(), QStringLiteral("trot/1"));
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGait));
  pass(10.0 / 24 + 0.001);
  EXPECT_EQ(shown(), QStringLiteral("trot/2"));
}

TEST_F(PetSceneBodyTest, aWalkWithoutFramesHopsAndLeans) {
  frames(idle, 2);
  present();
  m_scene.beginGait(-3);
  pass(0.14);
  EXPECT_NEAR(m_scene.lifeNode().position().y() - m_scene.lifeBasePosition().y(), 4, 1e-9);
  EXPECT_DOUBLE_EQ(m_scene.lifeNode().xScale(), -1);
  pass(0.14);
  EXPECT_NEAR(m_scene.lifeNode().position().y() - m_scene.lifeBasePosition().y(), 0, 1e-9);
  EXPECT_NEAR(degrees(m_scene.lifeNode()), 4, 1e-9);
}

TEST_F(PetSceneBodyTest, theEndOfAWalkPutsThePetInItsPlaceLookingTheSameWay) {
  frames(idle, 2);
  present();
  m_scene.beginGait(-1);
  pass(0.2);
  m_scene.endGait();
  EXPECT_FALSE(m_scene.isGaitActive());
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGait));
  EXPECT_FALSE(runs(m_scene.lifeNode(), PetScene::Keys::lifeGaitLean));
  EXPECT_EQ(m_scene.lifeNode().position(), m_scene.lifeBasePosition());
  pass(0.25);
  EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
  EXPECT_EQ(m_scene.facing(), -1);
  EXPECT_EQ(m_scene.lifeNode().xScale(), -1);
  m_scene.beginGait(0);
  pass(0.12);
  EXPECT_EQ(m_scene.facing(), 1);
  EXPECT_EQ(m_scene.lifeNode().xScale(), 1);
}

TEST_F(PetSceneBodyTest, actionsInTheMiddleOfAHopLeaveThePetInItsPlace) {
  frames(idle, 2);
  frames(celebrate, 4);
  present();
  m_scene.beginGait(1);
  for (int round = 0; round < 30; ++round) {
    pass(0.37);
    ASSERT_TRUE(m_scene.react(celebrate));
    m_scene.setMood(QString::number(round));
  }
  const double rest = m_scene.lifeBasePosition().y();
  EXPECT_NEAR(extreme(1, [&] { return rest - m_scene.lifeNode().position().y(); }), 0, 1e-6);
  EXPECT_NEAR(extreme(1, [&] { return m_scene.lifeNode().position().y() - rest; }), 4, 0.1);
}

TEST_F(PetSceneBodyTest, anActionInTheMiddleOfAHoppingGestureLeavesThePetInItsPlace) {
  frames(idle, 2);
  frames(celebrate, 4);
  present();
  m_scene.perform(ProceduralGesture::bob);
  pass(0.4);
  ASSERT_TRUE(m_scene.react(celebrate));
  pass(3);
  EXPECT_NEAR(m_scene.lifeNode().position().y(), m_scene.lifeBasePosition().y(), 1e-9);
}

TEST_F(PetSceneBodyTest, nothingHappensToAPetThatWasNeverPresented) {
  frames(idle, 2);
  m_scene.setCarried(true, 100);
  m_scene.setCarried(false, 0);
  m_scene.setTossed(true);
  m_scene.setTossed(false);
  m_scene.beginGait(-1);
  m_scene.endGait();
  m_scene.perform(ProceduralGesture::bob);
  m_scene.scheduleDirector(seconds(1));
  pass(100);
  EXPECT_FALSE(m_scene.frameInterval());
  EXPECT_FALSE(m_scene.lastAutonomous());
}

struct GestureRow {
  ProceduralGesture gesture;
  double at;
  double rise;
  double degrees;
  double xScale;
  double yScale;
};

class GestureTest : public PetSceneBodyTest, public testing::WithParamInterface<GestureRow> {};

TEST_P(GestureTest, movesTheBodyAsItsNameSays) {
  frames(idle, 2);
  present();
  pass(1);
  m_scene.perform(GetParam().gesture);
  EXPECT_EQ(m_scene.lastAutonomous(), rawValue(GetParam().gesture));
  pass(GetParam().at);
  const Node &life = m_scene.lifeNode();
  EXPECT_NEAR(life.position().y() - m_scene.lifeBasePosition().y(), GetParam().rise, 1e-6);
  EXPECT_NEAR(degrees(life), GetParam().degrees, 1e-6);
  EXPECT_NEAR(m_scene.breathNode().xScale(), GetParam().xScale, 1e-6);
  if (GetParam().yScale > 0) {
    EXPECT_NEAR(m_scene.breathNode().yScale(), GetParam().yScale, 1e-6);
  }
}

// The pet is 180 points high. Where breathing goes on, the vertical scale is its business.
INSTANTIATE_TEST_SUITE_P(
    All, GestureTest,
    testing::Values(GestureRow{ProceduralGesture::bob, 0.42, 9, 0, 1, 0},
                    GestureRow{ProceduralGesture::bob, 0.42 + 0.55, 0, 0, 1, 0},
                    GestureRow{ProceduralGesture::sway, 0.8, 0, 3, 1, 0},
                    GestureRow{ProceduralGesture::sway, 0.8 + 1.4, 0, -3, 1, 0},
                    GestureRow{ProceduralGesture::sway, 0.8 + 1.4 + 0.7, 0, 0, 1, 0},
                    GestureRow{ProceduralGesture::perk, 0.16, 0, 0, 1.05, 1.05},
                    GestureRow{ProceduralGesture::perk, 0.16 + 0.35, 0, 0, 1, 1},
                    GestureRow{ProceduralGesture::perk, 0.16 + 0.35 + 0.22, 0, 0, 1, 1},
                    GestureRow{ProceduralGesture::perk, 0.73 + 3.4 * 0.45, 0, 0, 1, 1.016},
                    GestureRow{ProceduralGesture::stretch, 1.1, 0, 0, 1, 1.06},
                    GestureRow{ProceduralGesture::stretch, 2.0, 0, 0, 1, 1},
                    GestureRow{ProceduralGesture::stretch, 2.0 + 3.4 * 0.45, 0, 0, 1, 1.016}));

TEST_F(PetSceneBodyTest, aPetThatSwaysByItselfShowsTheGestureSwayInFull) {
  frames(idle, 2);
  present(R"({"motion":{"swayDegrees":1.4}})");
  PetScene alone{{200, 200}, m_folder.files(), m_sprites, m_setting, m_clock, m_random};
  alone.present();
  // It begins within one half of the sway of 3.74 seconds and ends in the next.
  pass(2.5);
  m_scene.perform(ProceduralGesture::sway);
  const auto passAsDrawn = [&](double time) {
    for (const Instant end = m_clock.instant() + seconds(time); m_clock.instant() < end;) {
      m_clock.advance(std::min(seconds(1.0 / 24), end - m_clock.instant()));
      m_scene.advance(m_clock.instant());
    }
    alone.advance(m_clock.instant());
    return degrees(m_scene.lifeNode()) - degrees(alone.lifeNode());
  };
  EXPECT_NEAR(passAsDrawn(0.8), 3, 1e-6);
  EXPECT_NEAR(passAsDrawn(1.4), -3, 1e-6);
  EXPECT_NEAR(passAsDrawn(0.7), 0, 1e-6);
  EXPECT_NEAR(passAsDrawn(9), 0, 1e-9);
}

TEST_F(PetSceneBodyTest, aPetThatStandsUpWithinTheGestureSwayIsUprightAfterIt) {
  frames(idle, 2);
  present();
  pass(1);
  m_scene.perform(ProceduralGesture::sway);
  pass(0.8);
  m_scene.setMood(QStringLiteral("focused"));
  pass(1.4);
  EXPECT_NEAR(degrees(m_scene.lifeNode()), -3, 1e-6);
  pass(0.7);
  EXPECT_NEAR(degrees(m_scene.lifeNode()), 0, 1e-9);
}

TEST_F(PetSceneBodyTest, aSmallPetHopsAtLeastFourPoints) {
  frames(idle, 2, {100, 10});
  present();
  m_scene.perform(ProceduralGesture::bob);
  pass(0.42);
  EXPECT_NEAR(m_scene.lifeNode().position().y() - m_scene.lifeBasePosition().y(), 4, 1e-9);
}

TEST_F(PetSceneBodyTest, aGestureWhileAnotherRunsIsDropped) {
  frames(idle, 2);
  present();
  for (const auto first : {ProceduralGesture::sway, ProceduralGesture::stretch}) {
    m_scene.perform(first);
    pass(0.5);
    m_scene.perform(ProceduralGesture::bob);
    EXPECT_EQ(m_scene.lastAutonomous(), rawValue(first));
    pass(10);
  }
  m_scene.perform(ProceduralGesture::bob);
  EXPECT_EQ(m_scene.lastAutonomous(), QStringLiteral("bob"));
}

TEST_F(PetSceneBodyTest, aGestureThatEndedUnwatchedDropsNoOther) {
  frames(idle, 2);
  present();
  m_scene.perform(ProceduralGesture::sway);
  m_clock.advance(seconds(10));
  m_scene.perform(ProceduralGesture::bob);
  EXPECT_EQ(m_scene.lastAutonomous(), QStringLiteral("bob"));
}

class MadProfileTest : public PetSceneBodyTest, public testing::WithParamInterface<double> {};

TEST_P(MadProfileTest, leavesAPetThatBreathesWithinItsLimits) {
  frames(idle, 2);
  const QByteArray number = QByteArray::number(GetParam(), 'g', 17);
  QByteArray pack = R"({"motion":{"style":"floaty","breathAmplitude":#,"breathPeriod":#,)"
                    R"("bobAmplitude":#,"swayDegrees":#,"tempo":#}})";
  present(pack.replace('#', number));
  const double rest = m_scene.lifeBasePosition().y();
  for (int step = 0; step < 2000; ++step) {
    pass(0.1);
    ASSERT_NEAR(m_scene.breathNode().yScale(), 1, 0.06);
    ASSERT_GE(m_scene.lifeNode().position().y(), rest - 1e-6);
    ASSERT_LE(m_scene.lifeNode().position().y(), rest + 12 + 9 + 1e-6);
    ASSERT_LE(std::abs(degrees(m_scene.lifeNode())), 9 + 1e-6);
  }
}

INSTANTIATE_TEST_SUITE_P(All, MadProfileTest,
                         testing::Values(-1e308, -1, -1e-300, 0.0, 1e-300, 1e9, 1e308));

/// Orders in any order, as fast as anything can give them, on a pet whose pack is rewritten
/// meanwhile.
class AnyOrdersTest : public PetSceneBodyTest, public testing::WithParamInterface<std::uint64_t> {
protected:
  void order(RandomSource &random) {
    static const QStringList moods{QStringLiteral("calm"), QStringLiteral("sleepy"),
                                   QStringLiteral("hype"), QStringLiteral("")};
    static const QStringList actions{idle, celebrate, QStringLiteral("dangle"),
                                     QStringLiteral("../idle"), QStringLiteral("gone")};
    switch (random.below(12)) {
    case 0:
      m_scene.setMood(moods[static_cast<qsizetype>(random.below(moods.size()))]);
      break;
    case 1:
      m_scene.react(actions[static_cast<qsizetype>(random.below(actions.size()))]);
      break;
    case 2:
    case 3:
      m_scene.setCarried(random.below(3) > 0, random.uniform(-9000, 9000));
      break;
    case 4:
    case 5:
      m_scene.setTossed(random.below(2) == 0);
      break;
    case 6:
      m_scene.beginGait(random.uniform(-1, 1));
      break;
    case 7:
      m_scene.endGait();
      break;
    case 8:
      m_scene.perform(static_cast<ProceduralGesture>(random.below(4)));
      break;
    case 9:
      m_scene.emitHearts();
      break;
    case 10:
      m_folder.writePack(pet, pack(random));
      break;
    default:
      m_scene.setPersona(random.below(4) == 0 ? QStringLiteral("custom-2") : pet);
    }
  }
  [[nodiscard]] static QByteArray pack(RandomSource &random) {
    static const QByteArrayList packs{
        R"({"motion":{"style":"floaty","swayDegrees":6,"bobAmplitude":12}})",
        R"({"actions":[{"id":"dangle","loop":true,"tags":["carried","fly","走"]}]})",
        R"({"actions":[{"id":"dangle","frameSet":"../idle"}],"autonomousActions":["dangle"]})",
        "{}", "torn {"};
    return packs[static_cast<qsizetype>(random.below(packs.size()))];
  }
};

TEST_P(AnyOrdersTest, leaveAPetThatComesToRestInItsPlace) {
  frames(idle, 3);
  frames(celebrate, 5);
  frames(QStringLiteral("dangle"), 4);
  SeededRandomSource random(GetParam());
  if (random.below(4) > 0) {
    present(pack(random));
  }
  m_scene.setStrollHandler([&] { m_scene.beginGait(random.uniform(-1, 1)); });
  for (int step = 0; step < 200; ++step) {
    order(random);
    pass(random.below(20) == 0 ? random.uniform(0, 400) : random.uniform(0, 0.3));
    const QPointF off = m_scene.lifeNode().position() - m_scene.lifeBasePosition();
    ASSERT_LT(std::hypot(off.x(), off.y()), 60);
    ASSERT_LE(std::abs(m_scene.breathNode().yScale() - 1), 0.15);
  }
  m_scene.present();
  m_scene.setQuietMode(true);
  m_scene.setCarried(false, 0);
  m_scene.setTossed(false);
  m_scene.endGait();
  m_scene.setMood(QStringLiteral("focused"));
  pass(5);
  m_folder.writePack(pet, R"({"tier":1})");
  m_scene.setPersona(pet);
  pass(1);
  EXPECT_EQ(m_scene.lifeNode().position(), m_scene.lifeBasePosition());
  EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
  EXPECT_EQ(m_scene.lifeNode().xScale(), m_scene.facing());
  EXPECT_EQ(m_scene.breathNode().xScale(), 1);
  EXPECT_EQ(m_scene.pet()->yScale(), 1);
  EXPECT_TRUE(shown().startsWith(u"idle/"));
  EXPECT_EQ(m_scene.root().children().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(All, AnyOrdersTest, testing::Range(std::uint64_t{0}, std::uint64_t{12}));

} // namespace
} // namespace morvo
