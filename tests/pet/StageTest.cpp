#include "pet/stage/Stage.h"

#include "base/RandomSource.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace morvo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double pi = std::numbers::pi;
const QString key = QStringLiteral("key");

SpriteFrame frameNamed(const QString &name) {
  SpriteFrame frame;
  frame.path = name;
  return frame;
}

Action::Frames framesNamed(const QStringList &names) {
  Action::Frames frames;
  for (const QString &name : names) {
    frames.push_back(frameNamed(name));
  }
  return frames;
}

class StageTest : public testing::Test {
protected:
  StageTest() { m_stage.root()->addChild(m_node); }

  void pass(double time) { m_stage.advance(m_stage.now() + seconds(time)); }
  [[nodiscard]] Action note(const QString &text) {
    return Action::run([this, text] { m_notes.append(text); });
  }

  Stage m_stage{Instant(std::chrono::hours(5))};
  std::shared_ptr<Node> m_node = std::make_shared<Node>();
  QStringList m_notes;
};

TEST_F(StageTest, timeMovesAndNothingElseDoes) {
  m_node->run(Action::moveBy({10, -4}, seconds(2)));
  EXPECT_EQ(m_node->position(), QPointF(0, 0));
  pass(0.5);
  EXPECT_EQ(m_node->position(), QPointF(2.5, -1));
  m_stage.advance(m_stage.now() - seconds(1));
  EXPECT_EQ(m_node->position(), QPointF(2.5, -1));
  pass(10);
  EXPECT_EQ(m_node->position(), QPointF(10, -4));
}

TEST_F(StageTest, whatAStepLeavesOverGoesToTheNextAction) {
  m_node->run(Action::sequence({Action::moveBy({1, 0}, seconds(0.25)), Action::wait(seconds(0.25)),
                                Action::moveBy({0, 8}, seconds(1))}));
  pass(1);
  EXPECT_EQ(m_node->position(), QPointF(1, 4));
}

TEST_F(StageTest, aRepetitionCarriesItsRemainderToo) {
  m_node->run(Action::repeatForever(Action::moveBy({1, 0}, seconds(0.4))));
  pass(1);
  EXPECT_NEAR(m_node->position().x(), 2.5, 1e-9);
  pass(1000);
  EXPECT_NEAR(m_node->position().x(), 2502.5, 1e-6);
}

TEST_F(StageTest, aGroupEndsWithItsLongest) {
  m_node->run(Action::sequence(
      {Action::group({Action::moveBy({1, 0}, seconds(1)), Action::moveBy({0, 1}, seconds(3))}),
       note(QStringLiteral("end"))}));
  pass(2.9);
  EXPECT_THAT(m_notes, IsEmpty());
  pass(0.1);
  EXPECT_THAT(m_notes, ElementsAre(u"end"));
  EXPECT_EQ(m_node->position(), QPointF(1, 1));
}

TEST_F(StageTest, emptySequencesAndGroupsEndAtOnce) {
  m_node->run(Action::sequence({Action::sequence({}), Action::group({}),
                                Action::animate({}, seconds(1)), note(QStringLiteral("end"))}));
  pass(0);
  EXPECT_THAT(m_notes, ElementsAre(u"end"));
}

struct EasingRow {
  Easing easing;
  double quarter;
  double half;
};

class EasingTest : public testing::TestWithParam<EasingRow> {};

TEST_P(EasingTest, keepsItsEndsAndItsCurve) {
  EXPECT_EQ(eased(GetParam().easing, 0), 0);
  EXPECT_EQ(eased(GetParam().easing, 1), 1);
  EXPECT_DOUBLE_EQ(eased(GetParam().easing, 0.25), GetParam().quarter);
  EXPECT_DOUBLE_EQ(eased(GetParam().easing, 0.5), GetParam().half);
}

INSTANTIATE_TEST_SUITE_P(All, EasingTest,
                         testing::Values(EasingRow{Easing::linear, 0.25, 0.5},
                                         EasingRow{Easing::easeIn, 0.0625, 0.25},
                                         EasingRow{Easing::easeOut, 0.4375, 0.75},
                                         EasingRow{Easing::easeInOut, 0.15625, 0.5}));

struct ArcRow {
  double from;
  double to;
  double half;
};

class ShortestArcTest : public testing::TestWithParam<ArcRow> {};

TEST_P(ShortestArcTest, isTakenAndEndsOnTheTarget) {
  Stage stage{Instant()};
  stage.root()->setRotation(GetParam().from);
  stage.root()->run(Action::rotateTo(GetParam().to, seconds(2)));
  stage.advance(Instant(seconds(1)));
  EXPECT_NEAR(stage.root()->rotation(), GetParam().half, 1e-12);
  stage.advance(Instant(seconds(2)));
  EXPECT_EQ(stage.root()->rotation(), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(All, ShortestArcTest,
                         testing::Values(ArcRow{0, 1, 0.5}, ArcRow{0, -1, -0.5},
                                         ArcRow{0.9 * pi, -0.9 * pi, pi},
                                         ArcRow{-0.9 * pi, 0.9 * pi, -pi},
                                         ArcRow{4 * pi, 0.5, 4 * pi + 0.25}));

TEST_F(StageTest, theDirectWayGoesThroughTheNumbers) {
  m_node->setRotation(0.9 * pi);
  m_node->run(Action::rotateTo(-0.9 * pi, seconds(2), Easing::linear, Arc::direct));
  pass(1);
  EXPECT_NEAR(m_node->rotation(), 0, 1e-12);
  pass(1);
  EXPECT_EQ(m_node->rotation(), -0.9 * pi);
}

TEST_F(StageTest, movesAddUpAndTargetsEndExactly) {
  m_node->run(Action::moveBy({10, 0}, seconds(1), Easing::easeIn));
  m_node->run(Action::moveBy({0, 6}, seconds(1), Easing::easeOut));
  m_node->run(Action::rotateBy(7, seconds(1)));
  m_node->run(Action::scaleXTo(-1, seconds(1)));
  m_node->run(Action::scaleYTo(0.1, seconds(1)));
  m_node->run(Action::fadeOut(seconds(1)));
  pass(0.5);
  EXPECT_DOUBLE_EQ(m_node->xScale(), 0);
  EXPECT_DOUBLE_EQ(m_node->yScale(), 0.55);
  EXPECT_DOUBLE_EQ(m_node->alpha(), 0.5);
  pass(0.5);
  EXPECT_EQ(m_node->position(), QPointF(10, 6));
  EXPECT_DOUBLE_EQ(m_node->rotation(), 7);
  EXPECT_EQ(m_node->xScale(), -1);
  EXPECT_EQ(m_node->yScale(), 0.1);
  EXPECT_EQ(m_node->alpha(), 0);
  m_node->run(Action::fadeIn(seconds(1)));
  m_node->run(Action::scaleTo(3, seconds(0)));
  pass(1);
  EXPECT_EQ(m_node->alpha(), 1);
  EXPECT_EQ(m_node->xScale(), 3);
  EXPECT_EQ(m_node->yScale(), 3);
}

TEST_F(StageTest, turningByAnAngleComesOnTopOfTurningToOne) {
  const auto loop = Action::repeatForever(
      Action::sequence({Action::rotateTo(1, seconds(3)), Action::rotateTo(-1, seconds(3))}));
  const auto alone = std::make_shared<Node>();
  m_stage.root()->addChild(alone);
  for (const auto &node : {m_node, alone}) {
    node->run(loop);
  }
  pass(2.5);
  m_node->run(
      Action::sequence({Action::rotateBy(0.5, seconds(1)), Action::rotateBy(-0.5, seconds(1))}));
  for (const double added : {0.25, 0.5, 0.25, 0.0}) {
    // Over the end of the loop's first half, too.
    for (int step = 0; step < 10; ++step) {
      pass(0.05);
    }
    EXPECT_NEAR(m_node->rotation() - alone->rotation(), added, 1e-9);
  }
}

TEST_F(StageTest, whatAnEndedTurnHasAddedStaysWhereNothingOwnsTheAngle) {
  m_node->run(Action::rotateBy(1, seconds(2)), key);
  pass(1);
  m_node->removeAction(key);
  EXPECT_DOUBLE_EQ(m_node->rotation(), 0.5);
  m_node->run(Action::rotateTo(0, seconds(1)));
  pass(0.5);
  EXPECT_DOUBLE_EQ(m_node->rotation(), 0.25);
  m_node->run(Action::rotateBy(1, seconds(0.25)));
  pass(0.5);
  EXPECT_EQ(m_node->rotation(), 0);
}

TEST_F(StageTest, aTurnToATargetEndsThereWhateverItsOwnActionTurnedBefore) {
  const auto turn = Action::sequence(
      {Action::rotateBy(1, seconds(0)),
       Action::group({Action::rotateBy(1, seconds(1)), Action::rotateBy(1, seconds(1))}),
       Action::rotateTo(0.25, seconds(1))});
  m_node->run(Action::repeatForever(Action::sequence({turn, Action::wait(seconds(1))})));
  pass(1);
  EXPECT_DOUBLE_EQ(m_node->rotation(), 3);
  pass(1.5);
  EXPECT_EQ(m_node->rotation(), 0.25);
  pass(3);
  EXPECT_EQ(m_node->rotation(), 0.25);
}

TEST_F(StageTest, framesShowEachForItsTimeAndTheFirstAtOnce) {
  m_node->setSize({7, 7});
  m_node->run(Action::animate(
      framesNamed({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}), seconds(0.5)));
  pass(0);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("a"));
  pass(0.499);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("a"));
  pass(0.001);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("b"));
  pass(5);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("c"));
  EXPECT_EQ(m_node->size(), QSizeF(7, 7));
}

TEST_F(StageTest, aRepeatedAnimationBeginsAgainAtItsEnd) {
  m_node->run(Action::repeatForever(
      Action::animate(framesNamed({QStringLiteral("a"), QStringLiteral("b")}), seconds(1))));
  pass(2);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("a"));
  pass(101);
  EXPECT_EQ(m_node->texture()->path, QStringLiteral("b"));
}

/// Many actions that touch each other, among them blocks that replace one another.
void fill(Stage &stage, const std::shared_ptr<Node> &node) {
  Node *const raw = node.get();
  node->run(Action::repeatForever(
      Action::sequence({Action::moveBy({3, 1}, seconds(0.07), Easing::easeInOut),
                        Action::moveBy({-2, 0.5}, seconds(0.11), Easing::easeOut)})));
  node->run(Action::repeatForever(Action::sequence(
      {Action::rotateTo(2, seconds(0.13), Easing::easeIn), Action::rotateTo(-3, seconds(0.09))})));
  node->run(Action::repeatForever(
      Action::sequence({Action::wait(seconds(0.21)), Action::run([raw] {
                          raw->run(Action::scaleTo(raw->xScale() + 0.5, seconds(0.3)), key);
                        })})));
  node->run(Action::repeatForever(
      Action::animate(framesNamed({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}),
                      seconds(1.0 / 24))));
  stage.root()->addChild(node);
}

TEST_F(StageTest, oneStepOfASecondLeavesTheSameStateAsSixtyOfASixtieth) {
  SeededRandomSource random(3);
  Stage large{Instant()};
  Stage small{Instant()};
  Stage uneven{Instant()};
  const std::vector<std::shared_ptr<Node>> nodes{std::make_shared<Node>(), std::make_shared<Node>(),
                                                 std::make_shared<Node>()};
  fill(large, nodes[0]);
  fill(small, nodes[1]);
  fill(uneven, nodes[2]);
  const Instant end(seconds(1));
  large.advance(end);
  for (int step = 1; step <= 60; ++step) {
    small.advance(Instant(seconds(step / 60.0)));
  }
  small.advance(end);
  while (uneven.now() < end) {
    uneven.advance(std::min(uneven.now() + seconds(random.uniform(0, 0.1)), end));
  }
  for (const auto &node : {nodes[1], nodes[2]}) {
    EXPECT_NEAR(node->position().x(), nodes[0]->position().x(), 1e-9);
    EXPECT_NEAR(node->position().y(), nodes[0]->position().y(), 1e-9);
    EXPECT_NEAR(node->rotation(), nodes[0]->rotation(), 1e-9);
    EXPECT_NEAR(node->xScale(), nodes[0]->xScale(), 1e-9);
    EXPECT_EQ(node->texture(), nodes[0]->texture());
  }
}

TEST_F(StageTest, blocksOfOneInstantComeInOrderAfterAllHasMoved) {
  const auto child = std::make_shared<Node>();
  m_node->addChild(child);
  QPointF seen;
  child->run(Action::sequence({Action::wait(seconds(1)), note(QStringLiteral("child"))}));
  m_node->run(Action::sequence({Action::wait(seconds(1)), note(QStringLiteral("first")),
                                Action::run([&] { seen = child->position(); })}));
  m_node->run(Action::sequence({Action::wait(seconds(1)), note(QStringLiteral("second"))}));
  m_stage.root()->run(
      Action::sequence({Action::wait(seconds(0.5)), note(QStringLiteral("early"))}));
  child->run(Action::moveBy({4, 0}, seconds(1)));
  pass(3);
  EXPECT_THAT(m_notes, ElementsAre(u"early", u"first", u"second", u"child"));
  EXPECT_EQ(seen, QPointF(4, 0));
}

TEST_F(StageTest, anActionRemovedMidwayStaysWhereItIsAndCallsNothing) {
  m_node->run(Action::sequence({Action::moveBy({10, 0}, seconds(1)), note(QStringLiteral("end"))}),
              key);
  pass(0.5);
  m_node->removeAction(key);
  pass(5);
  EXPECT_EQ(m_node->position(), QPointF(5, 0));
  EXPECT_THAT(m_notes, IsEmpty());
  EXPECT_FALSE(m_node->actionForKey(key));
}

TEST_F(StageTest, anActionUnderTheSameKeyReplacesTheRunningOne) {
  m_node->run(Action::repeatForever(Action::moveBy({10, 0}, seconds(1))), key);
  pass(0.5);
  m_node->run(Action::moveBy({0, 1}, seconds(1)), key);
  pass(1);
  EXPECT_EQ(m_node->position(), QPointF(5, 1));
  EXPECT_FALSE(m_node->actionForKey(key));
}

TEST_F(StageTest, anEmptyKeyReplacesNothingAndFindsNothing) {
  m_node->run(Action::moveBy({1, 0}, seconds(1)));
  m_node->run(Action::moveBy({0, 1}, seconds(1)));
  m_node->removeAction({});
  EXPECT_FALSE(m_node->actionForKey({}));
  pass(1);
  EXPECT_EQ(m_node->position(), QPointF(1, 1));
}

TEST_F(StageTest, aBlockMayRemoveAnotherActionWhoseBlockIsDueToo) {
  m_node->run(Action::sequence(
      {Action::wait(seconds(1)), Action::run([this] { m_node->removeAction(key); })}));
  m_node->run(Action::sequence({Action::wait(seconds(1)), note(QStringLiteral("never"))}), key);
  pass(2);
  EXPECT_THAT(m_notes, IsEmpty());
}

TEST_F(StageTest, aBlockMayRestartItsOwnKeyAndTheRestTakesTheRemainder) {
  std::function<void()> again = [&] {
    m_notes.append(QStringLiteral("again"));
    m_node->run(Action::sequence({Action::moveBy({1, 0}, seconds(1)), Action::run(again)}), key);
  };
  again();
  pass(3.5);
  EXPECT_EQ(m_notes.size(), 4);
  EXPECT_NEAR(m_node->position().x(), 3.5, 1e-9);
  EXPECT_TRUE(m_node->actionForKey(key));
}

TEST_F(StageTest, aBlockThatRemovesItsOwnActionEndsIt) {
  m_node->run(Action::sequence({Action::run([this] { m_node->removeAction(key); }),
                                Action::moveBy({9, 0}, seconds(1)), note(QStringLiteral("never"))}),
              key);
  pass(3);
  EXPECT_EQ(m_node->position(), QPointF(0, 0));
  EXPECT_THAT(m_notes, IsEmpty());
}

TEST_F(StageTest, anEndedActionIsStillThereWhileItsLastBlockRuns) {
  bool there = false;
  m_node->run(Action::sequence({Action::wait(seconds(1)), Action::run([&] {
                                  there = m_node->actionForKey(key).has_value();
                                })}),
              key);
  pass(1);
  EXPECT_TRUE(there);
  EXPECT_FALSE(m_node->actionForKey(key));
}

TEST_F(StageTest, aNodeThatRemovesItselfIsGoneAndDies) {
  std::weak_ptr<Node> watched;
  {
    const auto child = std::make_shared<Node>();
    watched = child;
    child->run(Action::sequence({Action::wait(seconds(1)), Action::removeFromParent()}));
    m_node->addChild(child);
  }
  pass(0.9);
  EXPECT_EQ(m_node->children().size(), 1U);
  pass(0.2);
  EXPECT_EQ(m_node->children().size(), 0U);
  EXPECT_TRUE(watched.expired());
}

TEST_F(StageTest, aNodeOutsideTheTreeRestsAndGoesOnWhenItIsBack) {
  m_node->run(Action::moveBy({10, 0}, seconds(1)));
  pass(0.25);
  m_node->removeFromParent();
  pass(5);
  EXPECT_EQ(m_node->position(), QPointF(2.5, 0));
  m_stage.root()->addChild(m_node);
  pass(0.25);
  EXPECT_EQ(m_node->position(), QPointF(5, 0));
}

TEST_F(StageTest, aBlockOfANodeThatJustLeftTheTreeIsNotCalled) {
  const auto child = std::make_shared<Node>();
  m_node->addChild(child);
  m_stage.root()->run(Action::sequence(
      {Action::wait(seconds(1)), Action::run([&] { m_node->removeFromParent(); })}));
  child->run(Action::sequence({Action::wait(seconds(1)), note(QStringLiteral("never"))}));
  pass(2);
  EXPECT_THAT(m_notes, IsEmpty());
}

TEST_F(StageTest, anEndlessRepetitionOfNothingRunsOnce) {
  m_node->run(Action::sequence(
      {Action::repeatForever(note(QStringLiteral("x"))), note(QStringLiteral("after"))}));
  pass(100);
  EXPECT_THAT(m_notes, ElementsAre(u"x", u"after"));
}

TEST_F(StageTest, workThatAddsWorkWithoutTimeDoesNotHang) {
  int calls = 0;
  std::function<void()> again = [&] {
    ++calls;
    m_node->run(Action::run(again));
  };
  again();
  pass(1);
  EXPECT_GT(calls, 100);
  EXPECT_LE(calls, Stage::mostRounds + 1);
}

TEST_F(StageTest, advanceFromABlockDoesNothing) {
  m_node->run(Action::run([this] { m_stage.advance(m_stage.now() + seconds(100)); }));
  pass(1);
  EXPECT_EQ(m_stage.now(), Instant(std::chrono::hours(5)) + seconds(1));
}

TEST_F(StageTest, revisionGrowsWithVisibleChangesOnly) {
  const auto &root = *m_stage.root();
  const auto before = root.revision();
  m_node->run(Action::wait(seconds(1)));
  m_node->run(Action::repeatForever(
      Action::animate(framesNamed({QStringLiteral("a"), QStringLiteral("b")}), seconds(1))));
  EXPECT_EQ(root.revision(), before);
  pass(0);
  const auto shown = root.revision();
  EXPECT_GT(shown, before);
  pass(0.9);
  m_node->setPosition(m_node->position());
  EXPECT_EQ(root.revision(), shown);
  pass(0.1);
  EXPECT_GT(root.revision(), shown);
}

TEST_F(StageTest, activityTellsWhatIsInPlay) {
  EXPECT_EQ(m_stage.activity(), Activity());
  m_node->run(Action::wait(seconds(3)));
  EXPECT_EQ(m_stage.activity().nextEnd, Duration::zero());
  pass(1);
  EXPECT_EQ(m_stage.activity(), (Activity{{}, false, seconds(2)}));
  m_node->run(Action::fadeOut(seconds(1)));
  pass(0);
  EXPECT_TRUE(m_stage.activity().inMotion);
  m_node->run(Action::animate(framesNamed({QStringLiteral("a")}), seconds(0.1)));
  pass(0);
  EXPECT_FALSE(m_stage.activity().frameTime);
  m_node->run(
      Action::animate(framesNamed({QStringLiteral("a"), QStringLiteral("b")}), seconds(0.1)));
  pass(0);
  EXPECT_EQ(m_stage.activity().frameTime, seconds(0.1));
}

TEST_F(StageTest, negativeDurationsCountAsNothing) {
  m_node->run(Action::sequence({Action::wait(seconds(-5)), Action::moveBy({1, 0}, seconds(-1)),
                                note(QStringLiteral("end"))}));
  pass(0);
  EXPECT_EQ(m_node->position(), QPointF(1, 0));
  EXPECT_THAT(m_notes, ElementsAre(u"end"));
}

TEST_F(StageTest, aDayAsleepIsCaughtUp) {
  m_node->run(Action::repeatForever(Action::sequence(
      {Action::scaleYTo(1.02, seconds(1.5)), Action::scaleYTo(0.99, seconds(1.5))})));
  pass(24 * 3600.0 + 1.5);
  EXPECT_NEAR(m_node->yScale(), 1.02, 1e-9);
}

/// What a leap can skip: repetitions of random rounds, each of properties of its own.
void fillWithLoops(const std::shared_ptr<Node> &node, std::uint64_t seed) {
  SeededRandomSource random(seed);
  const auto time = [&] { return seconds(random.uniform(0.05, 3)); };
  const auto easing = [&] { return static_cast<Easing>(random.below(4)); };
  const auto offset = [&] { return QPointF(random.uniform(-3, 3), random.uniform(-3, 3)); };
  node->run(Action::repeatForever(
      Action::sequence({Action::moveBy(offset(), time(), easing()), Action::wait(time()),
                        Action::moveBy(offset(), time(), easing())})));
  node->run(Action::repeatForever(Action::moveBy(offset(), time())));
  if (random.below(2) == 0) {
    node->run(Action::repeatForever(
        Action::sequence({Action::rotateTo(random.uniform(-9, 9), time(), easing()),
                          Action::rotateTo(random.uniform(-9, 9), time(), easing())})));
  } else {
    node->run(Action::repeatForever(Action::rotateBy(random.uniform(-9, 9), time(), easing())));
  }
  node->run(Action::repeatForever(
      Action::group({Action::scaleXTo(random.uniform(0, 2), time(), easing()),
                     Action::sequence({Action::scaleYTo(random.uniform(0, 2), time(), easing()),
                                       Action::scaleYTo(random.uniform(0, 2), time())})})));
  node->run(Action::repeatForever(
      Action::sequence({Action::fadeOut(time(), easing()), Action::fadeIn(time(), easing())})));
  node->run(Action::repeatForever(Action::animate(
      framesNamed({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}), time())));
}

void expectAlike(const Node &a, const Node &b) {
  EXPECT_NEAR(a.position().x(), b.position().x(), 1e-6);
  EXPECT_NEAR(a.position().y(), b.position().y(), 1e-6);
  EXPECT_NEAR(a.rotation(), b.rotation(), 1e-6);
  EXPECT_NEAR(a.xScale(), b.xScale(), 1e-9);
  EXPECT_NEAR(a.yScale(), b.yScale(), 1e-9);
  EXPECT_NEAR(a.alpha(), b.alpha(), 1e-9);
  EXPECT_EQ(a.texture(), b.texture());
}

/// Anything at all that pulls at the same few properties.
Action anyAction(SeededRandomSource &random, int depth = 0) {
  const Duration time = seconds(random.uniform(0, 2));
  const auto easing = static_cast<Easing>(random.below(4));
  const double value = random.uniform(-3, 3);
  const auto parts = [&] {
    std::vector<Action> actions;
    for (std::size_t count = 1 + random.below(3); count > 0; --count) {
      actions.push_back(anyAction(random, depth + 1));
    }
    return actions;
  };
  constexpr std::size_t kinds = 9;
  constexpr std::size_t simpleKinds = 6;
  switch (random.below(depth < 3 ? kinds : simpleKinds)) {
  case 0:
    return Action::moveBy({value, -value}, time, easing);
  case 1:
    return Action::rotateTo(value, time, easing,
                            random.below(2) == 0 ? Arc::shortest : Arc::direct);
  case 2:
  case 3:
    return Action::rotateBy(value, time, easing);
  case 4:
    return Action::scaleTo(value, time, easing);
  case 5:
    return Action::wait(time);
  case 6:
    return Action::sequence(parts());
  case 7:
    return Action::group(parts());
  default:
    return Action::repeatForever(Action::sequence(parts()));
  }
}

class AnyStepTest : public testing::TestWithParam<std::uint64_t> {};

TEST_P(AnyStepTest, leavesTheStateOfSmallSteps) {
  constexpr int actions = 4;
  constexpr int stepsASecond = 60;
  Stage large{Instant()};
  Stage small{Instant()};
  SeededRandomSource random(GetParam());
  for (int turn = 0; turn < actions; ++turn) {
    const Action action = anyAction(random);
    for (const Stage *stage : {&large, &small}) {
      stage->root()->run(action);
    }
    for (int time = 0; time < 3; ++time) {
      const Instant end = large.now() + seconds(1);
      large.advance(end);
      for (int step = 1; step <= stepsASecond; ++step) {
        small.advance(end - seconds(1) + seconds(1) * step / stepsASecond);
      }
      expectAlike(*large.root(), *small.root());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, AnyStepTest, testing::Range(std::uint64_t{0}, std::uint64_t{200}));

class LeapTest : public testing::TestWithParam<std::uint64_t> {};

TEST_P(LeapTest, leavesTheStateOfSmallSteps) {
  Stage leaping{Instant()};
  Stage walking{Instant()};
  for (const Stage *stage : {&leaping, &walking}) {
    fillWithLoops(stage->root(), GetParam());
  }
  SeededRandomSource random(GetParam());
  Duration end = seconds(random.uniform(0, 9));
  leaping.advance(Instant(end));
  end += seconds(random.uniform(20, 1000));
  leaping.advance(Instant(end));
  while (walking.now() < Instant(end)) {
    walking.advance(std::min(walking.now() + seconds(9), Instant(end)));
  }
  expectAlike(*leaping.root(), *walking.root());
  end += seconds(1.23);
  leaping.advance(Instant(end));
  walking.advance(Instant(end));
  expectAlike(*leaping.root(), *walking.root());
}

INSTANTIATE_TEST_SUITE_P(All, LeapTest, testing::Range(std::uint64_t{0}, std::uint64_t{16}));

TEST_F(StageTest, aWeekAsleepCostsAFewRounds) {
  fillWithLoops(m_node, 1);
  pass(0);
  const auto before = m_node->revision();
  pass(7 * 24 * 3600.0);
  EXPECT_LT(m_node->revision() - before, 500U);
}

TEST_F(StageTest, aLongStepCallsItsBlocksAtTheirInstants) {
  m_node->run(Action::repeatForever(Action::moveBy({1, 0}, seconds(0.5))));
  QStringList places;
  for (const double time : {100.0, 3600.25, 86400.0}) {
    m_node->run(Action::sequence({Action::wait(seconds(time)), Action::run([&, this] {
                                    places.append(QString::number(m_node->position().x()));
                                  })}));
  }
  pass(2 * 86400.0);
  EXPECT_THAT(places, ElementsAre(u"200", u"7200.5", u"172800"));
  EXPECT_DOUBLE_EQ(m_node->position().x(), 4 * 86400.0);
}

TEST_F(StageTest, repetitionsWithBlocksMissNoneInALongStep) {
  int calls = 0;
  m_node->run(Action::repeatForever(
      Action::sequence({Action::wait(seconds(1)), Action::run([&] { ++calls; })})));
  m_node->run(Action::repeatForever(Action::rotateBy(1, seconds(1))));
  pass(5000);
  EXPECT_EQ(calls, 5000);
  EXPECT_NEAR(m_node->rotation(), 5000, 1e-6);
}

TEST_F(StageTest, repetitionsThatPullAtTheSamePropertyAreWalkedThrough) {
  Stage walking{Instant()};
  Stage leaping{Instant()};
  for (const Stage *stage : {&leaping, &walking}) {
    const auto &node = stage->root();
    node->run(Action::repeatForever(
        Action::sequence({Action::rotateTo(1, seconds(0.7)), Action::rotateTo(-1, seconds(1.1))})));
    node->run(Action::repeatForever(Action::rotateBy(0.3, seconds(0.4))));
    node->run(Action::repeatForever(Action::sequence(
        {Action::rotateTo(2, seconds(0.31)), Action::rotateBy(0.5, seconds(0.17))})));
  }
  const Instant end(seconds(333.3));
  leaping.advance(end);
  while (walking.now() < end) {
    walking.advance(std::min(walking.now() + seconds(3), end));
  }
  expectAlike(*leaping.root(), *walking.root());
}

TEST_F(StageTest, aRoundThatTurnsToAndByIsNotSkippedWrongly) {
  m_node->run(Action::repeatForever(
      Action::sequence({Action::rotateBy(1, seconds(1)), Action::rotateTo(0, seconds(1))})));
  pass(1000);
  EXPECT_NEAR(m_node->rotation(), 0, 1e-9);
  pass(1001);
  EXPECT_NEAR(m_node->rotation(), 1, 1e-9);
}

} // namespace
} // namespace morvo
