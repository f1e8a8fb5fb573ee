#include "pet/BehaviorDirector.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>

namespace morvo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using enum ProceduralGesture;

const QString calm = QStringLiteral("calm");

QString text(const char *latin) { return QString::fromUtf8(latin); }

PetPack::Action action(const char *id, const QStringList &tags = {}, const char *frameSet = "") {
  PetPack::Action made;
  made.id = text(id);
  made.frameSet = text(frameSet);
  made.tags = tags;
  return made;
}

BehaviorContext context(const QString &mood, PetBehaviorMode mode = PetBehaviorMode::natural,
                        bool strollAvailable = false) {
  return {.mood = mood, .mode = mode, .strollAvailable = strollAvailable};
}

PetPack packOf(std::vector<PetPack::Action> actions) {
  PetPack pack;
  for (const PetPack::Action &each : actions) {
    pack.autonomousActions.append(each.id);
  }
  pack.actions = std::move(actions);
  return pack;
}

PetPack withTempo(double tempo) {
  PetPack pack;
  pack.motion = PetPack::MotionProfile{.tempo = tempo};
  return pack;
}

QString described(const BehaviorDecision::Move &move) {
  if (const auto *gesture = std::get_if<ProceduralGesture>(&move)) {
    return rawValue(*gesture);
  }
  if (const auto *play = std::get_if<BehaviorDecision::Play>(&move)) {
    return QStringLiteral("play ") + play->frameSet;
  }
  return std::holds_alternative<BehaviorDecision::Stroll>(move) ? text("stroll") : text("none");
}

struct CadenceRow {
  const char *mood;
  double lower;
  double upper;
  std::vector<ProceduralGesture> gestures;
};

class MoodTest : public testing::TestWithParam<CadenceRow> {};

TEST_P(MoodTest, setsThePaceAndTheGestures) {
  EXPECT_EQ(BehaviorDirector::cadence(text(GetParam().mood)),
            std::pair(GetParam().lower, GetParam().upper));
  EXPECT_EQ(BehaviorDirector::gesturePool(text(GetParam().mood)), GetParam().gestures);
}

INSTANTIATE_TEST_SUITE_P(All, MoodTest,
                         testing::Values(CadenceRow{"lonely", 55, 110, {perk, bob, sway}},
                                         CadenceRow{"hype", 70, 140, {bob, perk, sway}},
                                         CadenceRow{"happy", 70, 140, {bob, perk, sway}},
                                         CadenceRow{"sleepy", 150, 280, {sway, stretch}},
                                         CadenceRow{"dreamy", 150, 280, {sway, stretch}},
                                         CadenceRow{"hungry", 150, 280, {sway, stretch}},
                                         CadenceRow{"calm", 100, 200, {bob, sway, perk, stretch}},
                                         CadenceRow{
                                             "focused", 100, 200, {bob, sway, perk, stretch}},
                                         CadenceRow{"", 100, 200, {bob, sway, perk, stretch}}));

struct ModeRow {
  const char *raw;
  PetBehaviorMode mode;
};

class ModeTest : public testing::TestWithParam<ModeRow> {};

TEST_P(ModeTest, isReadFromItsTextAndUnknownOnesAreNatural) {
  EXPECT_EQ(petBehaviorMode(text(GetParam().raw)), GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(All, ModeTest,
                         testing::Values(ModeRow{"natural", PetBehaviorMode::natural},
                                         ModeRow{"playful", PetBehaviorMode::playful},
                                         ModeRow{"rest", PetBehaviorMode::rest},
                                         ModeRow{"", PetBehaviorMode::natural},
                                         ModeRow{"Rest", PetBehaviorMode::natural},
                                         ModeRow{"wild", PetBehaviorMode::natural}));

TEST(PetBehaviorModeTest, isWrittenAsItsText) {
  EXPECT_EQ(rawValue(PetBehaviorMode::natural), text("natural"));
  EXPECT_EQ(rawValue(PetBehaviorMode::playful), text("playful"));
  EXPECT_EQ(rawValue(PetBehaviorMode::rest), text("rest"));
}

struct SignalRow {
  const char *name;
  PetPack::Action action;
  bool signal;
};

class SignalTest : public testing::TestWithParam<SignalRow> {};

TEST_P(SignalTest, isToldByTagsAndByNameOnlyWithoutAny) {
  EXPECT_EQ(BehaviorDirector::isSignalAction(GetParam().action), GetParam().signal);
}

INSTANTIATE_TEST_SUITE_P(
    All, SignalTest,
    testing::Values(SignalRow{"tag", action("x", {text("agent_done")}), true},
                    SignalRow{"tag", action("x", {text("light"), text("needs_input")}), true},
                    SignalRow{"tag", action("x", {text("signature")}), true},
                    SignalRow{"tag", action("x", {text("celebrate")}), true},
                    SignalRow{"tag", action("x", {text("alert")}), true},
                    SignalRow{"once", action("x", {text("oneshot")}), false},
                    SignalRow{"taggedName", action("celebrate", {text("light")}), false},
                    SignalRow{"name", action("celebrate"), true},
                    SignalRow{"name", action("alert"), true},
                    SignalRow{"frameSet", action("x", {}, "celebrate"), true},
                    SignalRow{"frameSet", action("x", {}, "alert"), true},
                    SignalRow{"plain", action("dance", {}, "dance"), false}));

TEST(BehaviorDirectorTest, candidatesComeInTheOrderOfThePackWithoutSignalsAndGaps) {
  PetPack pack;
  pack.actions = {action("a", {}, "fa"), action("a", {}, "second"), action("b"),
                  action("wave", {text("signature")}, "fa"), action("still", {}, "one")};
  pack.autonomousActions = {text("b"), text("nobody"), text("wave"), text("a"), text("still")};
  const auto found = BehaviorDirector::candidates(pack, {text("fa"), text("b"), text("second")});
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].id, text("b"));
  EXPECT_EQ(found[1].frameSet, text("fa"));
}

TEST(BehaviorDirectorTest, thereAreNoCandidatesWithoutPackOrFrames) {
  EXPECT_THAT(BehaviorDirector::candidates(std::nullopt, {text("a")}), IsEmpty());
  EXPECT_THAT(BehaviorDirector::candidates(packOf({action("a")}), {}), IsEmpty());
}

struct SuppressionRow {
  const char *name;
  BehaviorContext context;
};

class SuppressionTest : public testing::TestWithParam<SuppressionRow> {};

TEST_P(SuppressionTest, givesNothingForHalfTheUsualWait) {
  SeededRandomSource random(5);
  for (int round = 0; round < 1000; ++round) {
    const auto decision = BehaviorDirector::decide(GetParam().context, std::nullopt, {}, random);
    EXPECT_EQ(described(decision.move), text("none")) << GetParam().name;
    EXPECT_GE(decision.wait, 50);
    EXPECT_LE(decision.wait, 100);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, SuppressionTest,
    testing::Values(
        SuppressionRow{"sticky", {.mood = calm, .stickyLoopActive = true}},
        SuppressionRow{"performing", {.mood = calm, .performing = true}},
        SuppressionRow{"quiet", {.mood = calm, .quiet = true}},
        SuppressionRow{"recent", {.mood = calm, .secondsSincePerformance = 59}},
        SuppressionRow{"recentStroll",
                       {.mood = calm, .secondsSincePerformance = 59.99, .strollAvailable = true}}));

TEST(BehaviorDirectorTest, exactlyAtTheLimitThePetActs) {
  SeededRandomSource random(5);
  BehaviorContext rested = context(calm);
  rested.secondsSincePerformance = 60;
  EXPECT_NE(described(BehaviorDirector::decide(rested, std::nullopt, {}, random).move),
            text("none"));
}

struct RateRow {
  double tempo;
  PetBehaviorMode mode;
  double rate;
};

class RateTest : public testing::TestWithParam<RateRow> {};

TEST_P(RateTest, scalesTheWaitAndIsClamped) {
  SeededRandomSource random(7);
  const double low = 100 / GetParam().rate;
  const double high = std::max(200 / GetParam().rate, low + 1);
  double least = high;
  double most = low;
  for (int round = 0; round < 5000; ++round) {
    const auto decision = BehaviorDirector::decide(context(calm, GetParam().mode),
                                                   withTempo(GetParam().tempo), {}, random);
    ASSERT_GE(decision.wait, low);
    ASSERT_LE(decision.wait, high);
    least = std::min(least, decision.wait);
    most = std::max(most, decision.wait);
  }
  EXPECT_NEAR(least, low, (high - low) * 0.01);
  EXPECT_NEAR(most, high, (high - low) * 0.01);
}

INSTANTIATE_TEST_SUITE_P(All, RateTest,
                         testing::Values(RateRow{1, PetBehaviorMode::natural, 1},
                                         RateRow{2, PetBehaviorMode::natural, 2},
                                         RateRow{1, PetBehaviorMode::playful, 1.7},
                                         RateRow{1, PetBehaviorMode::rest, 0.45},
                                         RateRow{10, PetBehaviorMode::playful, 5},
                                         RateRow{0.1, PetBehaviorMode::rest, 0.2},
                                         RateRow{-3, PetBehaviorMode::natural, 0.2},
                                         RateRow{std::nan(""), PetBehaviorMode::natural, 1},
                                         RateRow{std::nan(""), PetBehaviorMode::playful, 1.7},
                                         RateRow{INFINITY, PetBehaviorMode::rest, 5},
                                         RateRow{-INFINITY, PetBehaviorMode::playful, 0.2},
                                         RateRow{1e308, PetBehaviorMode::playful, 5}));

TEST(BehaviorDirectorTest, theTempoShortensTheRestAfterAPerformanceToo) {
  SeededRandomSource random(5);
  BehaviorContext rested = context(calm);
  rested.secondsSincePerformance = 29.9;
  EXPECT_EQ(described(BehaviorDirector::decide(rested, withTempo(2), {}, random).move),
            text("none"));
  rested.secondsSincePerformance = 30;
  EXPECT_NE(described(BehaviorDirector::decide(rested, withTempo(2), {}, random).move),
            text("none"));
}

struct WaitRow {
  std::pair<double, double> range;
  double factor;
  double low;
  double high;
};

class WaitTest : public testing::TestWithParam<WaitRow> {};

TEST_P(WaitTest, liesBetweenEndsThatAreASecondApartAtLeast) {
  SeededRandomSource random(7);
  double least = GetParam().high;
  double most = GetParam().low;
  for (int round = 0; round < 5000; ++round) {
    const double wait = BehaviorDirector::wait(GetParam().range, GetParam().factor, random);
    ASSERT_GE(wait, GetParam().low);
    ASSERT_LE(wait, GetParam().high);
    least = std::min(least, wait);
    most = std::max(most, wait);
  }
  const double near = (GetParam().high - GetParam().low) * 0.01;
  EXPECT_NEAR(least, GetParam().low, near);
  EXPECT_NEAR(most, GetParam().high, near);
}

INSTANTIATE_TEST_SUITE_P(
    All, WaitTest,
    testing::Values(WaitRow{{100, 200}, 1, 100, 200}, WaitRow{{100, 200}, 0.5, 50, 100},
                    WaitRow{{55, 110}, 0.1, 5.5, 11}, WaitRow{{10, 20}, 0.1, 1, 2},
                    WaitRow{{10, 20}, 0.05, 0.5, 1.5}, WaitRow{{55, 110}, 0.001, 0.055, 1.055},
                    WaitRow{{7, 7}, 1, 7, 8}));

struct ModeFiguresRow {
  PetBehaviorMode mode;
  double stroll;
  double play;
};

struct MoodRow {
  const char *mood;
  bool strolls;
};

class DistributionTest : public testing::TestWithParam<std::tuple<ModeFiguresRow, MoodRow>> {};

TEST_P(DistributionTest, followsTheThresholds) {
  constexpr int rounds = 100'000;
  const auto &[figures, mood] = GetParam();
  const PetPack pack = packOf({action("a", {}, "fa"), action("b")});
  const QString moodName = text(mood.mood);
  SeededRandomSource random(11);
  std::map<QString, double> shares;
  for (int round = 0; round < rounds; ++round) {
    const auto decision = BehaviorDirector::decide(context(moodName, figures.mode, true), pack,
                                                   {text("fa"), text("b")}, random);
    shares[described(decision.move)] += 1.0 / rounds;
  }
  const double stroll = mood.strolls ? figures.stroll : 0;
  const double play = (1 - stroll) * figures.play;
  const auto pool = BehaviorDirector::gesturePool(moodName);
  const double gesture = (1 - stroll - play) / static_cast<double>(pool.size());
  // Five standard deviations of the rarest share that is not nothing stay below this.
  constexpr double tolerance = 0.008;
  EXPECT_NEAR(shares[text("stroll")], stroll, stroll > 0 ? tolerance : 0);
  EXPECT_NEAR(shares[text("play fa")], play / 2, tolerance);
  EXPECT_NEAR(shares[text("play b")], play / 2, tolerance);
  for (const ProceduralGesture each : pool) {
    EXPECT_NEAR(shares[rawValue(each)], gesture, tolerance);
  }
  EXPECT_EQ(shares[text("none")], 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, DistributionTest,
    testing::Combine(testing::Values(ModeFiguresRow{PetBehaviorMode::natural, 0.18, 0.35},
                                     ModeFiguresRow{PetBehaviorMode::playful, 0.4, 0.5},
                                     ModeFiguresRow{PetBehaviorMode::rest, 0, 0.1}),
                     testing::Values(MoodRow{"calm", true}, MoodRow{"happy", true},
                                     MoodRow{"hype", true}, MoodRow{"lonely", true},
                                     MoodRow{"focused", true}, MoodRow{"sleepy", false},
                                     MoodRow{"dreamy", false}, MoodRow{"hungry", false})));

TEST(BehaviorDirectorTest, whereThereIsNoWayToWalkNobodyStrolls) {
  SeededRandomSource random(3);
  for (int round = 0; round < 5000; ++round) {
    const auto decision =
        BehaviorDirector::decide(context(calm, PetBehaviorMode::playful), std::nullopt, {}, random);
    EXPECT_NE(described(decision.move), text("stroll"));
  }
}

TEST(BehaviorDirectorTest, withoutAutonomousActionsOnlyGesturesAndStrollsOccur) {
  SeededRandomSource random(3);
  PetPack pack = packOf({action("a")});
  pack.autonomousActions.clear();
  for (int round = 0; round < 5000; ++round) {
    const auto decision = BehaviorDirector::decide(context(calm, PetBehaviorMode::playful, true),
                                                   pack, {text("a")}, random);
    EXPECT_FALSE(std::holds_alternative<BehaviorDecision::Play>(decision.move));
  }
}

TEST(BehaviorDirectorTest, theLastGestureIsNotRepeated) {
  SeededRandomSource random(3);
  BehaviorContext happy = context(text("happy"));
  happy.lastAutonomous = rawValue(bob);
  std::map<QString, int> counts;
  for (int round = 0; round < 5000; ++round) {
    ++counts[described(BehaviorDirector::decide(happy, std::nullopt, {}, random).move)];
  }
  EXPECT_THAT(counts, Not(Contains(testing::Key(text("bob")))));
  EXPECT_EQ(counts.size(), 2U);
}

TEST(BehaviorDirectorTest, theLastActionIsNotRepeatedUnderEitherName) {
  const PetPack pack = packOf({action("a", {}, "fa"), action("b")});
  for (const char *last : {"a", "fa"}) {
    SeededRandomSource random(3);
    BehaviorContext playful = context(calm, PetBehaviorMode::playful);
    playful.lastAutonomous = text(last);
    std::map<QString, int> counts;
    for (int round = 0; round < 2000; ++round) {
      ++counts[described(
          BehaviorDirector::decide(playful, pack, {text("fa"), text("b")}, random).move)];
    }
    EXPECT_THAT(counts, Not(Contains(testing::Key(text("play fa")))));
    EXPECT_GT(counts[text("play b")], 800);
  }
}

TEST(BehaviorDirectorTest, oneSeedTellsOneStory) {
  const PetPack pack = packOf({action("a"), action("b")});
  const auto story = [&] {
    SeededRandomSource random(99);
    QStringList moves;
    for (int round = 0; round < 100; ++round) {
      const auto decision = BehaviorDirector::decide(context(calm, PetBehaviorMode::natural, true),
                                                     pack, {text("a"), text("b")}, random);
      moves.append(described(decision.move) + QString::number(decision.wait));
    }
    return moves;
  };
  EXPECT_EQ(story(), story());
}

struct SemanticRow {
  const char *name;
  PetPack::Action action;
  bool found;
};

class SemanticTest : public testing::TestWithParam<SemanticRow> {};

TEST_P(SemanticTest, findsAnActionByWhatItSpeaksOf) {
  const QStringList hints{text("walk"), text("散步")};
  const auto found = BehaviorDirector::semanticFrameSet(
      hints, packOf({GetParam().action}), {text("x"), text("sidewalk"), text("Walker")});
  EXPECT_EQ(found.has_value(), GetParam().found) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    All, SemanticTest,
    testing::Values(SemanticRow{"id", action("sidewalk"), true},
                    SemanticRow{"anyCase", action("Walker"), true},
                    SemanticRow{"tag", action("x", {text("light"), text("散步时")}), true},
                    SemanticRow{"frameSet", action("go", {}, "sidewalk"), true},
                    SemanticRow{"acrossNames", action("wa", {}, "lk"), false},
                    SemanticRow{"unavailable", action("walk", {}, "w"), false},
                    SemanticRow{"unavailableId", action("walk"), false},
                    SemanticRow{"other", action("x"), false}));

TEST(BehaviorDirectorTest, theFirstFittingActionThatCanBePlayedIsFound) {
  const PetPack pack = packOf({action("walk", {}, "gone"), action("stride", {text("walk")}, "s"),
                               action("walk2", {}, "w2")});
  EXPECT_EQ(BehaviorDirector::semanticFrameSet({text("walk")}, pack, {text("s"), text("w2")}),
            text("s"));
  EXPECT_EQ(BehaviorDirector::semanticFrameSet({text("walk")}, std::nullopt, {text("s")}),
            std::nullopt);
}

} // namespace
} // namespace morvo
