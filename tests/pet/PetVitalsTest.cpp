#include "pet/PetVitals.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

using PetVitals::isOneshotOnlyFrameSet;
using PetVitals::preferredLoopCandidates;
using PetVitals::resolveLoopAction;

const QString idle = QStringLiteral("idle");
const QString sleep = QStringLiteral("sleep");

PetPack packWith(const QString &id, bool loop, const QStringList &tags) {
  PetPack pack;
  pack.actions = {{id, id, id + QStringLiteral("_frames"), loop, tags, {}}};
  return pack;
}

TEST(PetVitalsTest, fiveNamesPlayOnlyOnce) {
  for (const auto *name : {u"greet", u"celebrate", u"petted", u"slap", u"roll"}) {
    EXPECT_TRUE(isOneshotOnlyFrameSet(QString::fromUtf16(name)));
    EXPECT_TRUE(isOneshotOnlyFrameSet(QString::fromUtf16(name), std::nullopt));
    EXPECT_TRUE(isOneshotOnlyFrameSet(QString::fromUtf16(name), PetPack()));
  }
  for (const auto *name : {u"idle", u"alert", u"Greet", u"", u"sleep"}) {
    EXPECT_FALSE(isOneshotOnlyFrameSet(QString::fromUtf16(name)));
  }
}

class OnceTagTest : public testing::TestWithParam<const char16_t *> {};

TEST_P(OnceTagTest, playsOnceEvenAsALoop) {
  const auto pack = packWith(QStringLiteral("hop"), true, {QString::fromUtf16(GetParam()), idle});
  EXPECT_TRUE(isOneshotOnlyFrameSet(QStringLiteral("hop"), pack));
  EXPECT_TRUE(isOneshotOnlyFrameSet(QStringLiteral("hop_frames"), pack));
}

INSTANTIATE_TEST_SUITE_P(All, OnceTagTest,
                         testing::Values(u"oneshot", u"signature", u"agent_done", u"needs_input",
                                         u"celebrate", u"alert"));

class RestTagTest : public testing::TestWithParam<const char16_t *> {};

TEST_P(RestTagTest, restsWhateverItsName) {
  const auto pack = packWith(QStringLiteral("roll"), false, {QString::fromUtf16(GetParam())});
  EXPECT_FALSE(isOneshotOnlyFrameSet(QStringLiteral("roll"), pack));
}

INSTANTIATE_TEST_SUITE_P(All, RestTagTest,
                         testing::Values(u"loop", u"idle", u"sleep", u"low_energy"));

TEST(PetVitalsTest, aLoopWithoutTagsRestsAndOtherwiseTheNameDecides) {
  EXPECT_FALSE(
      isOneshotOnlyFrameSet(QStringLiteral("roll"), packWith(QStringLiteral("roll"), true, {})));
  EXPECT_TRUE(
      isOneshotOnlyFrameSet(QStringLiteral("roll"), packWith(QStringLiteral("roll"), false, {})));
}

struct MoodCandidates {
  const char16_t *mood;
  QStringList candidates;
};

class MoodCandidatesTest : public testing::TestWithParam<MoodCandidates> {};

TEST_P(MoodCandidatesTest, inOrder) {
  EXPECT_EQ(preferredLoopCandidates(QString::fromUtf16(GetParam().mood)), GetParam().candidates);
}

const QStringList awake{QStringLiteral("idle"), QStringLiteral("watching"),
                        QStringLiteral("sleep")};
const QStringList drowsy{QStringLiteral("sleep"), QStringLiteral("idle")};

INSTANTIATE_TEST_SUITE_P(
    All, MoodCandidatesTest,
    testing::Values(MoodCandidates{u"hungry",
                                   {QStringLiteral("sleep"), QStringLiteral("watching"),
                                    QStringLiteral("idle")}},
                    MoodCandidates{u"sleepy", drowsy}, MoodCandidates{u"dreamy", drowsy},
                    MoodCandidates{u"lonely", awake}, MoodCandidates{u"happy", awake},
                    MoodCandidates{u"hype", awake}, MoodCandidates{u"calm", awake},
                    MoodCandidates{u"focused", awake},
                    MoodCandidates{u"odd", {QStringLiteral("idle")}},
                    MoodCandidates{u"", {QStringLiteral("idle")}}));

class RefusesIdleTest : public testing::TestWithParam<const char16_t *> {};

TEST_P(RefusesIdleTest, evenWhenThePackSaysSo) {
  const QString mood = QString::fromUtf16(GetParam());
  const QSet<QString> available{idle, sleep, QStringLiteral("float")};
  const QString own = preferredLoopCandidates(mood).first();
  EXPECT_EQ(resolveLoopAction(mood, idle, true, available), own);
  EXPECT_EQ(resolveLoopAction(mood, QStringLiteral("float"), true, available),
            QStringLiteral("float"));
}

INSTANTIATE_TEST_SUITE_P(All, RefusesIdleTest,
                         testing::Values(u"hungry", u"sleepy", u"dreamy", u"lonely"));

TEST(PetVitalsTest, aOneshotIsNoRestingLoop) {
  const QString celebrate = QStringLiteral("celebrate");
  EXPECT_EQ(resolveLoopAction(QStringLiteral("calm"), celebrate, true, {celebrate, idle}), idle);
}

TEST(PetVitalsTest, onlyOneshotsAvailableRestsInIdleWithoutFrames) {
  EXPECT_EQ(resolveLoopAction(QStringLiteral("calm"), {}, false,
                              {QStringLiteral("celebrate"), QStringLiteral("greet")}),
            idle);
}

TEST(PetVitalsTest, withNothingAvailableThePackOrTheFirstCandidateIsTaken) {
  EXPECT_EQ(resolveLoopAction(QStringLiteral("calm"), QStringLiteral("float"), true, {}),
            QStringLiteral("float"));
  EXPECT_EQ(resolveLoopAction(QStringLiteral("sleepy"), idle, true, {}), sleep);
  EXPECT_EQ(resolveLoopAction(QStringLiteral("odd"), {}, true, {}), idle);
}

TEST(PetVitalsTest, aChoiceThatIsNotExplicitOrNotAvailableGivesWay) {
  const QString flying = QStringLiteral("float");
  EXPECT_EQ(resolveLoopAction(QStringLiteral("calm"), flying, false, {flying, idle}), idle);
  EXPECT_EQ(resolveLoopAction(QStringLiteral("calm"), flying, true, {sleep}), sleep);
}

TEST(PetVitalsTest, theLastResortIsTheFirstNameThatMayRest) {
  EXPECT_EQ(
      resolveLoopAction(QStringLiteral("odd"), {}, false,
                        {QStringLiteral("walk"), QStringLiteral("greet"), QStringLiteral("run")}),
      QStringLiteral("run"));
  EXPECT_EQ(resolveLoopAction(QStringLiteral("odd"), {}, false, {QStringLiteral("a"), idle}), idle);
}

TEST(PetVitalsTest, aggregateIsTheLargestPercentageInRange) {
  EXPECT_EQ(PetVitals::aggregateUsedPct({}), 0);
  EXPECT_EQ(PetVitals::aggregateUsedPct({-5}), 0);
  EXPECT_EQ(PetVitals::aggregateUsedPct({3, 140, 7}), 100);
  EXPECT_EQ(PetVitals::aggregateUsedPct({3, 41, 7}), 41);
}

} // namespace
} // namespace morvo
