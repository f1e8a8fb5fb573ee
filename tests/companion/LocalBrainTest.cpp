#include "companion/LocalBrain.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using LocalBrain::Reaction;

QJsonObject agentSignal(const QString &status) {
  return {{QStringLiteral("kind"), QStringLiteral("agent")}, {QStringLiteral("status"), status}};
}

class LocalBrainTest : public testing::Test {
protected:
  [[nodiscard]] Reaction react(const QString &status, const LinePack *lines = nullptr,
                               const PetPack *pack = nullptr) {
    return LocalBrain::react({agentSignal(status)}, lines, pack, m_random);
  }

  SeededRandomSource m_random{1};
};

struct StandardAnswer {
  const char16_t *status;
  const char16_t *action;
  bool notify;
  PetEventKind event;
};

class StandardAnswerTest : public LocalBrainTest,
                           public testing::WithParamInterface<StandardAnswer> {};

TEST_P(StandardAnswerTest, WithoutPacksEachStatusHasItsStandardAnswer) {
  const auto &expected = GetParam();
  EXPECT_EQ(react(QString::fromUtf16(expected.status)),
            (Reaction{.action = QString::fromUtf16(expected.action),
                      .line = {},
                      .notify = expected.notify,
                      .event = expected.event}));
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, StandardAnswerTest,
    testing::Values(StandardAnswer{u"done", u"celebrate", true, PetEventKind::agentDone},
                    StandardAnswer{u"needs_input", u"alert", true, PetEventKind::agentNeedsInput},
                    StandardAnswer{u"running", u"greet", false, PetEventKind::agentRunning}));

TEST_F(LocalBrainTest, OtherSignalsGiveNoReaction) {
  EXPECT_EQ(LocalBrain::react({}, nullptr, nullptr, m_random), Reaction{});
  EXPECT_EQ(react(QStringLiteral("paused")), Reaction{});
  EXPECT_EQ(LocalBrain::react({QJsonObject{{QStringLiteral("kind"), QStringLiteral("perm")},
                                           {QStringLiteral("status"), QStringLiteral("done")}}},
                              nullptr, nullptr, m_random),
            Reaction{});
}

TEST_F(LocalBrainTest, TheFirstAnswerableSignalDecides) {
  const QList<QJsonObject> signals{agentSignal(QStringLiteral("paused")),
                                   agentSignal(QStringLiteral("needs_input")),
                                   agentSignal(QStringLiteral("done"))};
  EXPECT_EQ(LocalBrain::react(signals, nullptr, nullptr, m_random).event,
            PetEventKind::agentNeedsInput);
}

TEST_F(LocalBrainTest, ThePackReplacesActionBucketAndNotification) {
  PetPack pack;
  pack.actions = {{.id = QStringLiteral("cheer"),
                   .label = {},
                   .frameSet = QStringLiteral("cheer_frames"),
                   .loop = false,
                   .tags = {},
                   .prompt = std::nullopt}};
  pack.reactions = {{.event = PetEventKind::agentDone,
                     .action = QStringLiteral("cheer"),
                     .lineBucket = LineBucket::rest,
                     .notify = false,
                     .priority = std::nullopt}};
  LinePack lines;
  lines.done = {QStringLiteral("done line")};
  lines.rest = {QStringLiteral("rest line")};
  EXPECT_EQ(react(QStringLiteral("done"), &lines, &pack),
            (Reaction{.action = QStringLiteral("cheer_frames"),
                      .line = QStringLiteral("rest line"),
                      .notify = false,
                      .event = PetEventKind::agentDone}));
}

TEST_F(LocalBrainTest, APackWithoutARuleLeavesTheStandardAnswer) {
  const PetPack pack;
  LinePack lines;
  lines.needsInput = {QStringLiteral("decide")};
  EXPECT_EQ(react(QStringLiteral("needs_input"), &lines, &pack),
            (Reaction{.action = QStringLiteral("alert"),
                      .line = QStringLiteral("decide"),
                      .notify = true,
                      .event = PetEventKind::agentNeedsInput}));
}

TEST_F(LocalBrainTest, ARunningAgentIsGreetedWithoutALine) {
  LinePack lines;
  lines.done = {QStringLiteral("done line")};
  EXPECT_TRUE(react(QStringLiteral("running"), &lines).line.isEmpty());
}

TEST_F(LocalBrainTest, AnEmptyBucketGivesNoLine) {
  const LinePack lines;
  EXPECT_TRUE(react(QStringLiteral("done"), &lines).line.isEmpty());
  EXPECT_TRUE(LocalBrain::pettedLine(&lines, m_random).isEmpty());
  EXPECT_TRUE(LocalBrain::pettedLine(nullptr, m_random).isEmpty());
}

TEST_F(LocalBrainTest, EveryLineOfABucketIsPicked) {
  LinePack lines;
  lines.petted = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
  QSet<QString> seen;
  for (int i = 0; i < 100; ++i) {
    seen.insert(LocalBrain::pettedLine(&lines, m_random));
  }
  EXPECT_EQ(seen.size(), 3);
}

struct MoodRow {
  Needs needs;
  const char16_t *mood;
};

class MoodTest : public testing::TestWithParam<MoodRow> {};

TEST_P(MoodTest, TheFirstNeedThatWeighsDecides) {
  EXPECT_EQ(LocalBrain::deriveMood(GetParam().needs), QString::fromUtf16(GetParam().mood));
}

INSTANTIATE_TEST_SUITE_P(
    ThresholdsAreInclusive, MoodTest,
    testing::Values(MoodRow{{80, 20, 80, 0}, u"sleepy"}, MoodRow{{80, 20.01, 80, 0}, u"calm"},
                    MoodRow{{20, 80, 80, 0}, u"hungry"}, MoodRow{{80, 80, 20, 0}, u"lonely"},
                    MoodRow{{80, 80, 80, 60}, u"hype"}, MoodRow{{80, 80, 80, 59.9}, u"happy"},
                    MoodRow{{80, 80, 80, 30}, u"happy"}, MoodRow{{80, 80, 80, 29.9}, u"calm"},
                    // Energy is looked at first, then belly, then affinity, then bond.
                    MoodRow{{10, 20, 10, 90}, u"sleepy"}, MoodRow{{10, 80, 10, 90}, u"hungry"},
                    MoodRow{{80, 80, 10, 90}, u"lonely"}));

} // namespace
} // namespace morvo
