#include "pet/PetSceneFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <numbers>

namespace morvo {
namespace {

using test::PetFolder;
using PetSceneTest = test::PetSceneFixture;
using testing::ElementsAre;
using testing::SizeIs;

const QString idle = QStringLiteral("idle");
const QString sleep = QStringLiteral("sleep");
const QString code = QStringLiteral("code");
const QString celebrate = QStringLiteral("celebrate");
const QString sleepy = QStringLiteral("sleepy");

TEST_F(PetSceneTest, thePetStandsOnItsFeetInItsPlace) {
  frames(idle, 2, {100, 50});
  present();
  ASSERT_NE(m_scene.pet(), nullptr);
  EXPECT_EQ(m_scene.pet()->anchor(), QPointF(0.5, 0));
  EXPECT_EQ(m_scene.pet()->position(), QPointF(0, 0));
  EXPECT_EQ(m_scene.pet()->size(), QSizeF(188, 94));
  EXPECT_EQ(m_scene.lifeNode().position(), QPointF(100, 8));
  EXPECT_EQ(m_scene.pet()->parent(), &m_scene.breathNode());
  EXPECT_EQ(m_scene.breathNode().parent(), &m_scene.lifeNode());
  EXPECT_EQ(m_scene.lifeNode().parent(), &m_scene.root());
}

TEST_F(PetSceneTest, presentingTwiceChangesNothing) {
  frames(idle, 2);
  present();
  const Node *const first = m_scene.pet();
  m_scene.present();
  EXPECT_EQ(m_scene.pet(), first);
  EXPECT_EQ(m_scene.root().children().size(), 1U);
}

TEST_F(PetSceneTest, aPetWithoutFramesIsDrawn) {
  present();
  EXPECT_FALSE(m_scene.pet()->texture()->picture.isNull());
  EXPECT_EQ(m_scene.frameInterval(), seconds(1.0 / 24));
  EXPECT_FALSE(m_scene.hasFrames());
}

TEST_F(PetSceneTest, theDrawingHasTheUsersColour) {
  const AdaptiveColor theme{QColor(200, 20, 20), QColor(220, 40, 40)};
  m_scene.setTheme(theme);
  present();
  // Beside the face, in the middle of the body's height.
  const QImage picture = m_scene.pet()->texture()->picture;
  const QColor shown = picture.pixelColor(picture.width() / 4, picture.height() / 2);
  EXPECT_NEAR(shown.hue(), theme.dark.hue(), 3);
}

TEST_F(PetSceneTest, theDrawingTakesUpAnotherColour) {
  present();
  const QImage before = m_scene.pet()->texture()->picture;
  const AdaptiveColor theme{QColor(200, 20, 20), QColor(220, 40, 40)};
  m_scene.setTheme(theme);
  const QImage after = m_scene.pet()->texture()->picture;
  EXPECT_NE(after, before);
  const std::uint64_t revision = m_scene.revision();
  m_scene.setTheme(theme);
  EXPECT_EQ(m_scene.revision(), revision);
}

TEST_F(PetSceneTest, anotherColourLeavesAPetOfFramesAlone) {
  frames(idle, 2);
  present();
  const std::uint64_t revision = m_scene.revision();
  m_scene.setTheme({QColor(200, 20, 20), QColor(220, 40, 40)});
  EXPECT_EQ(m_scene.revision(), revision);
}

TEST_F(PetSceneTest, aPetWithoutFramesDoesNotLookLikeTheOneBefore) {
  frames(idle, 2);
  present();
  m_scene.setPersona(QStringLiteral("custom-bare"));
  EXPECT_FALSE(m_scene.pet()->texture()->picture.isNull());
  m_scene.setPersona(pet);
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
}

TEST_F(PetSceneTest, nothingRunsBeforeThePetIsPresented) {
  frames(idle, 2);
  EXPECT_FALSE(m_scene.frameInterval());
  EXPECT_FALSE(m_scene.react(idle));
  m_scene.setMood(sleepy);
  m_scene.emitHearts();
  EXPECT_FALSE(m_scene.frameInterval());
  EXPECT_TRUE(m_scene.root().children().empty());
}

TEST_F(PetSceneTest, theIdleLoopRestsAtASixteenthAndOtherLoopsAtATwentyFourth) {
  frames(idle, 2);
  frames(sleep, 2);
  present();
  EXPECT_EQ(frameTime(), seconds(1.0 / 16));
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
  pass(1.0 / 16 + 0.001);
  EXPECT_EQ(shown(), QStringLiteral("idle/2"));
  m_scene.setMood(sleepy);
  EXPECT_EQ(frameTime(), seconds(1.0 / 24));
  EXPECT_EQ(shown(), QStringLiteral("sleep/1"));
}

TEST_F(PetSceneTest, theIdleLoopRunsAtATwelfthWhenTheUserPicksIt) {
  frames(idle, 2);
  present();
  EXPECT_TRUE(m_scene.react(idle));
  EXPECT_EQ(frameTime(), seconds(1.0 / 12));
  EXPECT_FALSE(m_scene.stickyLoopState());
}

TEST_F(PetSceneTest, aStateOfOneFrameIsShownAsAPicture) {
  frames(idle, 1);
  present();
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
  EXPECT_FALSE(runs(*m_scene.pet(), PetScene::Keys::loop));
  EXPECT_EQ(m_scene.frameInterval(), seconds(1.0 / 24));
}

TEST_F(PetSceneTest, anActionOfOneFrameIsSkippedYetItsFolderCanRest) {
  frames(code, 1);
  present(R"({"actions":[{"id":"type","frameSet":"code","loop":true}],
      "loops":[{"mood":"calm","action":"type"}]})");
  EXPECT_EQ(shown(), QStringLiteral("code/1"));
  EXPECT_FALSE(m_scene.react(QStringLiteral("type")));
  EXPECT_THAT(m_lines, ElementsAre(u"[PET] react skip: persona=custom-1 state=type→code frames=1"));
  ASSERT_THAT(m_scene.catalogActions(), SizeIs(1));
  EXPECT_FALSE(m_scene.catalogActions().front().hasFrames);
  EXPECT_FALSE(m_scene.lastPerformanceAt());
}

TEST_F(PetSceneTest, aSkippedReactionLeavesThePetUndisturbed) {
  frames(idle, 2);
  frames(code, 2);
  present();
  ASSERT_TRUE(m_scene.react(code));
  const auto revision = m_scene.revision();
  EXPECT_FALSE(m_scene.react(QStringLiteral("gone %1 \n")));
  EXPECT_EQ(m_scene.stickyLoopState(), code);
  EXPECT_EQ(m_scene.revision(), revision);
  EXPECT_THAT(
      m_lines,
      ElementsAre(u"[PET] react skip: persona=custom-1 state=gone %1  →gone %1   frames=0"));
}

TEST_F(PetSceneTest, aOneshotPlaysOnceAndTheMoodLoopReturns) {
  frames(idle, 2);
  frames(celebrate, 3);
  present();
  EXPECT_TRUE(m_scene.react(celebrate));
  EXPECT_TRUE(m_scene.isPerforming());
  EXPECT_EQ(m_scene.lastPerformanceAt(), m_clock.instant());
  EXPECT_EQ(shown(), QStringLiteral("celebrate/1"));
  pass(2.0 / 24 + 0.001);
  EXPECT_EQ(shown(), QStringLiteral("celebrate/3"));
  pass(1.0 / 24);
  EXPECT_FALSE(m_scene.isPerforming());
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
  EXPECT_EQ(frameTime(), seconds(1.0 / 16));
}

TEST_F(PetSceneTest, aLoopTaggedAsSignaturePlaysOnce) {
  frames(idle, 2);
  frames(code, 2);
  present(R"({"actions":[{"id":"code","loop":true,"tags":["signature","loop"]}]})");
  EXPECT_TRUE(m_scene.react(code));
  EXPECT_TRUE(m_scene.isPerforming());
  EXPECT_FALSE(m_scene.stickyLoopState());
  pass(1);
  EXPECT_FALSE(m_scene.isPerforming());
}

TEST_F(PetSceneTest, aOneshotClearsTheStickyLoop) {
  frames(idle, 2);
  frames(code, 2);
  frames(celebrate, 2);
  present();
  EXPECT_TRUE(m_scene.react(code));
  EXPECT_EQ(m_scene.stickyLoopState(), code);
  m_scene.setMood(QStringLiteral("happy"));
  EXPECT_EQ(shown(), QStringLiteral("code/1"));
  EXPECT_TRUE(m_scene.react(celebrate));
  EXPECT_FALSE(m_scene.stickyLoopState());
  pass(1);
  EXPECT_TRUE(shown().startsWith(u"idle/"));
}

TEST_F(PetSceneTest, aOneshotInPlayIsReplacedByTheNext) {
  frames(idle, 2);
  frames(celebrate, 24);
  frames(QStringLiteral("greet"), 24);
  present();
  m_scene.react(celebrate);
  pass(0.9);
  m_scene.react(QStringLiteral("greet"));
  pass(0.9);
  EXPECT_EQ(shown(), QStringLiteral("greet/22"));
  pass(0.2);
  EXPECT_TRUE(shown().startsWith(u"idle/"));
}

TEST_F(PetSceneTest, choosingIdleAndChangingThePetEndTheStickyLoop) {
  frames(idle, 2);
  frames(code, 2);
  present();
  m_scene.react(code);
  m_scene.react(idle);
  EXPECT_FALSE(m_scene.stickyLoopState());
  m_scene.react(code);
  m_scene.setPersona(pet);
  EXPECT_FALSE(m_scene.stickyLoopState());
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
}

TEST_F(PetSceneTest, theStickyLoopEndsWhenThePackCallsItAOneshot) {
  frames(idle, 2);
  frames(code, 2);
  present();
  m_scene.react(code);
  m_folder.writePack(pet, R"({"actions":[{"id":"code","tags":["oneshot"]}]})");
  m_scene.setMood(QStringLiteral("happy"));
  EXPECT_FALSE(m_scene.stickyLoopState());
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
}

struct LoopNameRow {
  const char16_t *state;
  bool loops;
};

class LoopNameTest : public PetSceneTest, public testing::WithParamInterface<LoopNameRow> {};

TEST_P(LoopNameTest, decidesWithoutAPack) {
  const QString state = QString::fromUtf16(GetParam().state);
  frames(state, 2);
  present();
  ASSERT_TRUE(m_scene.react(state));
  EXPECT_EQ(m_scene.isPerforming(), !GetParam().loops);
}

INSTANTIATE_TEST_SUITE_P(All, LoopNameTest,
                         testing::Values(LoopNameRow{u"idle", true}, LoopNameRow{u"sleep", true},
                                         LoopNameRow{u"code", true}, LoopNameRow{u"watching", true},
                                         LoopNameRow{u"monitor", true}, LoopNameRow{u"hop", false},
                                         LoopNameRow{u"greet", false}));

TEST_F(PetSceneTest, thePacksFlagDecidesOverTheName) {
  frames(idle, 2);
  frames(code, 2);
  frames(QStringLiteral("dance"), 2);
  present(R"({"actions":[{"id":"code"},{"id":"boogie","frameSet":"dance","loop":true}]})");
  EXPECT_TRUE(m_scene.react(code));
  EXPECT_TRUE(m_scene.isPerforming());
  EXPECT_TRUE(m_scene.react(QStringLiteral("boogie")));
  EXPECT_EQ(m_scene.stickyLoopState(), QStringLiteral("dance"));
}

TEST_F(PetSceneTest, theSameMoodRestartsNothing) {
  frames(idle, 4);
  present();
  pass(2.0 / 16 + 0.01);
  m_scene.setMood(QStringLiteral("calm"));
  EXPECT_EQ(shown(), QStringLiteral("idle/3"));
}

TEST_F(PetSceneTest, tiredPetsBreatheSlowerShallowerAndSquashed) {
  frames(idle, 2);
  present();
  EXPECT_NEAR(highest(3.4), 1.016, 1e-5);
  m_scene.setMood(sleepy);
  pass(0.5);
  EXPECT_DOUBLE_EQ(m_scene.pet()->yScale(), 0.9);
  pass(10);
  EXPECT_NEAR(highest(3.4 * 1.6), 1 + 0.016 * 0.6, 1e-5);
  m_scene.setMood(QStringLiteral("happy"));
  pass(0.5);
  EXPECT_DOUBLE_EQ(m_scene.pet()->yScale(), 1);
}

TEST_F(PetSceneTest, aRoundOfBreathTakesItsPeriodWhichIsLimited) {
  frames(idle, 1);
  present(R"({"motion":{"breathPeriod":0.5,"breathAmplitude":0.001}})");
  EXPECT_EQ(m_scene.breathNode().actionForKey(PetScene::Keys::lifeBreath)->duration(),
            Action::forever);
  pass(1.2 * 0.45);
  EXPECT_NEAR(m_scene.breathNode().yScale(), 1.004, 1e-9);
  pass(1.2 * 0.55);
  EXPECT_NEAR(m_scene.breathNode().yScale(), 1 - 0.35 * 0.004, 1e-9);
}

TEST_F(PetSceneTest, breathIsLimitedAboveToo) {
  frames(idle, 1);
  present(R"({"motion":{"breathPeriod":50,"breathAmplitude":3}})");
  pass(8 * 0.45);
  EXPECT_NEAR(m_scene.breathNode().yScale(), 1.05, 1e-9);
}

struct BodyRow {
  const char *motion;
  double bob;
  double swayDegrees;
};

class BodyMotionTest : public PetSceneTest, public testing::WithParamInterface<BodyRow> {};

TEST_P(BodyMotionTest, bobsAndSwaysAsThePackSays) {
  frames(idle, 1);
  present(QByteArray("{\"motion\":") + GetParam().motion + "}");
  const double rest = m_scene.lifeBasePosition().y();
  pass(3.4 * 0.9);
  EXPECT_NEAR(m_scene.lifeNode().position().y() - rest, GetParam().bob, 1e-6);
  pass(3.4 * 0.2);
  EXPECT_NEAR(m_scene.lifeNode().rotation(), GetParam().swayDegrees * std::numbers::pi / 180, 1e-6);
  EXPECT_EQ(runs(m_scene.lifeNode(), PetScene::Keys::lifeBob), GetParam().bob > 0);
  EXPECT_EQ(runs(m_scene.lifeNode(), PetScene::Keys::lifeSway), GetParam().swayDegrees > 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, BodyMotionTest,
    testing::Values(BodyRow{"{}", 0, 0}, BodyRow{R"({"style":"grounded"})", 0, 0},
                    BodyRow{R"({"style":"floaty"})", 4, 1.6},
                    BodyRow{R"({"style":"floaty","swayDegrees":0})", 4, 0},
                    BodyRow{R"({"style":"floaty","bobAmplitude":0,"swayDegrees":-3})", 0, 0},
                    BodyRow{R"({"bobAmplitude":30,"swayDegrees":9})", 12, 6},
                    BodyRow{R"({"bobAmplitude":-1,"swayDegrees":2})", 0, 2}));

TEST_F(PetSceneTest, losingTheSwayBringsThePetUpright) {
  frames(idle, 1);
  present(R"({"motion":{"swayDegrees":6}})");
  pass(3);
  ASSERT_GT(m_scene.lifeNode().rotation(), 0.01);
  m_folder.writePack(pet, R"({"motion":{"swayDegrees":0},"tier":1})");
  m_scene.setMood(QStringLiteral("happy"));
  pass(0.25);
  EXPECT_EQ(m_scene.lifeNode().rotation(), 0);
}

TEST_F(PetSceneTest, manyMoodChangesLeaveThePetInItsPlace) {
  frames(idle, 1);
  present(R"({"motion":{"bobAmplitude":12}})");
  for (int round = 0; round < 50; ++round) {
    pass(0.37);
    m_scene.setMood(QString::number(round));
  }
  EXPECT_EQ(m_scene.lifeNode().position(), m_scene.lifeBasePosition());
}

TEST_F(PetSceneTest, actionsInTheMiddleOfABobLeaveThePetInItsPlace) {
  frames(idle, 2);
  frames(celebrate, 24);
  present(R"({"motion":{"bobAmplitude":12,"breathPeriod":3}})");
  for (int round = 0; round < 50; ++round) {
    pass(1.37);
    ASSERT_TRUE(m_scene.react(celebrate));
    EXPECT_EQ(m_scene.lifeNode().position(), m_scene.lifeBasePosition());
  }
  pass(2);
  ASSERT_TRUE(runs(m_scene.lifeNode(), PetScene::Keys::lifeBob));
  const double rest = m_scene.lifeBasePosition().y();
  EXPECT_NEAR(extreme(6, [&] { return rest - m_scene.lifeNode().position().y(); }), 0, 1e-6);
  EXPECT_NEAR(extreme(6, [&] { return m_scene.lifeNode().position().y() - rest; }), 12, 0.01);
}

TEST_F(PetSceneTest, theCatalogueHoldsThePacksActionsAndTheOtherFrameSets) {
  frames(idle, 2);
  frames(QStringLiteral("walk"), 1);
  frames(QStringLiteral("b10"), 2);
  frames(QStringLiteral("b2"), 2);
  present(R"({"actions":[{"id":"float","label":"a","frameSet":"idle","loop":true},
      {"id":"again","label":"twice","frameSet":"idle"},{"id":"stroll","label":"","frameSet":"walk"},
      {"id":"bare","frameSet":"","label":"c"},{"id":"","frameSet":"","label":"none"}]})");
  const auto entry = [](const QString &id, const QString &frameSet, const QString &label,
                        bool hasFrames, bool loops) {
    return PetMenuAction{id, frameSet, label, hasFrames, loops};
  };
  const QString b2 = QStringLiteral("b2");
  const QString b10 = QStringLiteral("b10");
  EXPECT_THAT(m_scene.catalogActions(),
              ElementsAre(entry(QStringLiteral("float"), idle, QStringLiteral("a"), true, true),
                          entry(b2, b2, b2, true, false), entry(b10, b10, b10, true, false),
                          entry(QStringLiteral("bare"), QStringLiteral("bare"), QStringLiteral("c"),
                                false, false),
                          entry(QStringLiteral("stroll"), QStringLiteral("walk"),
                                QStringLiteral("stroll"), false, false)));
  EXPECT_EQ(m_scene.availableFrameSetsNow(), (QSet<QString>{idle, b2, b10}));
}

TEST_F(PetSceneTest, heartsDriftUpFromPlacesOfTheirOwnInOneOfTwoColours) {
  frames(idle, 1);
  present();
  QSet<QRgb> colors;
  std::vector<double> places;
  std::vector<double> drifts;
  for (int round = 0; round < 40; ++round) {
    m_scene.emitHearts();
    const auto children = m_scene.root().children();
    const std::vector<std::shared_ptr<Node>> hearts(children.begin() + 1, children.end());
    ASSERT_EQ(hearts.size(), 5U);
    std::vector<QPointF> starts;
    std::ranges::transform(hearts, std::back_inserter(starts), &Node::position);
    for (std::size_t index = 0; index < hearts.size(); ++index) {
      const QPointF start = starts[index];
      places.push_back(start.x() - m_scene.lifeBasePosition().x());
      colors.insert(hearts[index]->label()->color.rgba());
      // Just before it vanishes.
      pass(index == 0 ? 0.9 - 1e-9 : 0.08);
      EXPECT_NEAR(hearts[index]->position().y() - start.y(), 60, 1e-3);
      EXPECT_NEAR(hearts[index]->xScale(), 1.3, 1e-6);
      EXPECT_NEAR(hearts[index]->yScale(), 1.3, 1e-6);
      drifts.push_back(hearts[index]->position().x() - start.x());
    }
    pass(1);
  }
  EXPECT_EQ(colors, (QSet<QRgb>{QColor::fromRgbF(1, 0.45F, 0.6F).rgba(),
                                QColor::fromRgbF(0.4F, 0.75F, 1).rgba()}));
  // Two hundred draws come close to both ends of their range.
  const auto fills = [](const std::vector<double> &values, double limit) {
    const auto [least, most] = std::ranges::minmax(values);
    EXPECT_GE(least, -limit);
    EXPECT_LT(least, -0.9 * limit);
    EXPECT_LE(most, limit);
    EXPECT_GT(most, 0.9 * limit);
  };
  fills(places, 22);
  fills(drifts, 12);
}

TEST_F(PetSceneTest, heartsRiseOneAfterTheOtherAndVanish) {
  frames(idle, 1);
  present();
  const Node &root = m_scene.root();
  m_scene.emitHearts();
  ASSERT_EQ(root.children().size(), 6U);
  const Node &heart = *root.children()[1];
  EXPECT_EQ(heart.label()->text, QStringLiteral("♥"));
  EXPECT_EQ(heart.alpha(), 0);
  EXPECT_EQ(heart.zPosition(), 100);
  EXPECT_NEAR(heart.position().x(), 100, 22);
  EXPECT_DOUBLE_EQ(heart.position().y(), 8 + m_scene.pet()->size().height() * 0.55);
  pass(0.3);
  EXPECT_DOUBLE_EQ(heart.alpha(), 1);
  EXPECT_EQ(root.children()[5]->alpha(), 0);
  pass(0.61);
  EXPECT_EQ(root.children().size(), 5U);
  pass(0.32);
  EXPECT_EQ(root.children().size(), 1U);
}

TEST_F(PetSceneTest, opacityIsTheSpritesAloneAndStaysVisible) {
  frames(idle, 1);
  m_scene.setOpacity(0.5);
  present();
  EXPECT_EQ(m_scene.pet()->alpha(), 0.5);
  m_scene.setOpacity(0);
  EXPECT_EQ(m_scene.pet()->alpha(), 0.15);
  m_scene.setOpacity(7);
  EXPECT_EQ(m_scene.pet()->alpha(), 1);
}

TEST_F(PetSceneTest, aNewSizeFitsThePetAnew) {
  frames(idle, 2);
  present();
  m_scene.setSize({100, 100});
  EXPECT_EQ(m_scene.pet()->size(), QSizeF(90, 90));
  EXPECT_EQ(m_scene.lifeNode().position(), QPointF(50, 4));
}

TEST_F(PetSceneTest, revisionStandsStillBetweenChanges) {
  frames(idle, 2);
  present();
  const auto before = m_scene.revision();
  m_scene.advance(m_clock.instant());
  EXPECT_EQ(m_scene.revision(), before);
  pass(1.0 / 16);
  EXPECT_GT(m_scene.revision(), before);
}

TEST_F(PetSceneTest, aReactionAfterALongRestBeginsNow) {
  frames(idle, 2);
  frames(celebrate, 24);
  present();
  m_clock.advance(std::chrono::hours(8));
  m_scene.react(celebrate);
  EXPECT_EQ(shown(), QStringLiteral("celebrate/1"));
  pass(0.5);
  EXPECT_EQ(shown(), QStringLiteral("celebrate/13"));
}

TEST_F(PetSceneTest, aPackThatNamesFoldersElsewherePlaysNothing) {
  PetFolder::fill(m_folder.stateFolder(QStringLiteral("other"), idle), 2);
  frames(idle, 2);
  present(R"({"actions":[{"id":"steal","frameSet":"../other/idle"}],
      "loops":[{"mood":"calm","action":"steal"}]})");
  EXPECT_FALSE(m_scene.react(QStringLiteral("steal")));
  EXPECT_EQ(shown(), QStringLiteral("idle/1"));
}

} // namespace
} // namespace morvo
