#include "pet/PetPack.h"

#include "base/Json.h"
#include "base/RandomSource.h"

#include <gmock/gmock.h>

#include <array>
#include <limits>

namespace morvo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

PetPack decoded(const QByteArray &text) {
  const auto pack = petPackFromJson(text);
  EXPECT_TRUE(pack.has_value()) << text.constData();
  return pack.value_or(PetPack());
}

QByteArray encoded(const PetPack &pack) { return Json::pretty(toJson(pack)); }

TEST(PetPackTest, emptyObjectTakesAllDefaults) {
  const PetPack pack = decoded("{}");
  EXPECT_EQ(pack, PetPack());
  EXPECT_EQ(pack.schemaVersion, 1);
  EXPECT_EQ(pack.tier, 2);
  EXPECT_THAT(pack.actions, IsEmpty());
  EXPECT_THAT(pack.reactions, IsEmpty());
  EXPECT_THAT(pack.loops, IsEmpty());
}

TEST(PetPackTest, whatIsNoObjectIsNoPack) {
  for (const QByteArray text :
       {"", "[]", "null", "3", "\"x\"", "{", "{\"a\":}", "\xff\xfe", "{}x"}) {
    EXPECT_FALSE(petPackFromJson(text).has_value()) << text.constData();
  }
}

TEST(PetPackTest, aFieldOfTheWrongTypeCostsOnlyItself) {
  const PetPack pack = decoded(R"({"schemaVersion":"2","id":7,"displayName":"墨墨","tier":true,
      "personaPrompt":[],"actions":{},"reactions":3,"loops":"x","autonomousActions":["a"]})");
  PetPack expected;
  expected.displayName = QStringLiteral("墨墨");
  expected.autonomousActions = {QStringLiteral("a")};
  EXPECT_EQ(pack, expected);
}

TEST(PetPackTest, integersThatDoNotFitTakeTheDefault) {
  for (const QByteArray number :
       {"9223372036854775808", "-9223372036854777856", "1e300", "1.5", "99999999999999999999"}) {
    const PetPack pack = decoded("{\"schemaVersion\":" + number + ",\"tier\":" + number + "}");
    EXPECT_EQ(pack.schemaVersion, 1) << number.constData();
    EXPECT_EQ(pack.tier, 2) << number.constData();
  }
  for (const qint64 number :
       {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min(), qint64{3000000000},
        qint64{-9007199254740993}}) {
    const PetPack pack = decoded("{\"tier\":" + QByteArray::number(number) + "}");
    EXPECT_EQ(pack.tier, number);
    EXPECT_EQ(petPackFromJson(Json::pretty(toJson(pack)))->tier, number);
  }
  EXPECT_EQ(decoded(R"({"tier":3.0})").tier, 3);
}

TEST(PetPackTest, anActionFallsBackFieldByField) {
  const PetPack pack = decoded(
      R"({"actions":[{"id":"nap"},{"id":"hop","label":3,"frameSet":[],"loop":"yes","tags":[1],
          "prompt":false},{"id":"a","label":"","frameSet":"","loop":true,"tags":["x"],"prompt":"p"}]})");
  ASSERT_THAT(pack.actions, SizeIs(3));
  EXPECT_EQ(
      pack.actions[0],
      (PetPack::Action{
          QStringLiteral("nap"), QStringLiteral("nap"), QStringLiteral("nap"), false, {}, {}}));
  EXPECT_EQ(
      pack.actions[1],
      (PetPack::Action{
          QStringLiteral("hop"), QStringLiteral("hop"), QStringLiteral("hop"), false, {}, {}}));
  EXPECT_EQ(pack.actions[2],
            (PetPack::Action{
                QStringLiteral("a"), {}, {}, true, {QStringLiteral("x")}, QStringLiteral("p")}));
  EXPECT_EQ(pack.frameSet(QStringLiteral("a")), QString());
}

TEST(PetPackTest, oneActionWithoutIdEmptiesTheListAndNothingElse) {
  for (const QByteArray bad : {"{\"label\":\"x\"}", "{\"id\":3}", "\"hop\"", "null"}) {
    const PetPack pack = decoded("{\"actions\":[{\"id\":\"hop\"}," + bad + R"(],
        "reactions":[{"event":"agent_done","action":"hop"}],
        "loops":[{"mood":"calm","action":"hop"}]})");
    EXPECT_THAT(pack.actions, IsEmpty()) << bad.constData();
    EXPECT_EQ(pack.actionID(PetEventKind::agentDone), QStringLiteral("hop"));
    EXPECT_EQ(pack.loopAction(QStringLiteral("calm")), QStringLiteral("hop"));
  }
}

TEST(PetPackTest, anUnknownEventBetweenTwoRulesCostsOnlyItsOwn) {
  const PetPack pack = decoded(R"({"reactions":[{"event":"agent_done","action":"a"},
      {"event":"moon_rise","action":"b"},{"event":"idle","action":"c"}]})");
  ASSERT_THAT(pack.reactions, SizeIs(2));
  EXPECT_EQ(pack.reactions[0].action, QStringLiteral("a"));
  EXPECT_EQ(pack.reactions[1].action, QStringLiteral("c"));
}

TEST(PetPackTest, badRulesAreDroppedAndTheOrderKept) {
  const PetPack pack = decoded(R"({"reactions":[3,{"event":"idle"},{"event":"idle","action":"a",
      "lineBucket":"poem","notify":1,"priority":"high"},{"action":"x"}],
      "loops":[{"mood":"calm","action":"1"},{"mood":"x"},[],{"action":"x"},{"mood":"happy","action":"2"}]})");
  ASSERT_THAT(pack.reactions, SizeIs(1));
  EXPECT_EQ(pack.reactions[0],
            (PetPack::ReactionRule{PetEventKind::idle, QStringLiteral("a"), {}, false, {}}));
  ASSERT_THAT(pack.loops, SizeIs(2));
  EXPECT_EQ(pack.loops[1].mood, QStringLiteral("happy"));
}

TEST(PetPackTest, aTextMissesFromAutonomousActionsEmptiesThem) {
  EXPECT_THAT(decoded(R"({"autonomousActions":["a",1]})").autonomousActions, IsEmpty());
}

TEST(PetPackTest, generationIsWholeOrAbsent) {
  EXPECT_FALSE(
      decoded(R"({"generation":{"source":"ai-upload","style":"s","brief":"b"}})").generation);
  EXPECT_FALSE(decoded(R"({"generation":{"source":"a","style":"s","brief":"b","questions":[1]}})")
                   .generation);
  const auto pack =
      decoded(R"({"generation":{"source":"a","style":"s","brief":"b","questions":["q"]}})");
  ASSERT_TRUE(pack.generation);
  EXPECT_THAT(pack.generation->questions, ElementsAre(QStringLiteral("q")));
}

TEST(PetPackTest, motionIsWholeOrAbsent) {
  EXPECT_FALSE(decoded(R"({"motion":{"style":"floaty","tempo":"fast"}})").motion);
  EXPECT_FALSE(decoded(R"({"motion":[]})").motion);
  const auto pack = decoded(R"({"motion":{"style":null,"breathPeriod":3}})");
  ASSERT_TRUE(pack.motion);
  EXPECT_FALSE(pack.motion->style);
  EXPECT_EQ(pack.motion->breathPeriod, 3.0);
  EXPECT_EQ(decoded(R"({"motion":{}})").motion, PetPack::MotionProfile());
}

TEST(PetPackTest, theActionFollowsPriorityAndTheNotificationTheFileOrder) {
  const PetPack pack = decoded(R"({"reactions":[
      {"event":"agent_done","action":"low","priority":10,"notify":false,"lineBucket":"done"},
      {"event":"agent_done","action":"high","priority":100,"notify":true}]})");
  EXPECT_EQ(pack.actionID(PetEventKind::agentDone), QStringLiteral("high"));
  EXPECT_FALSE(pack.notify(PetEventKind::agentDone, true));
  EXPECT_EQ(pack.lineBucketFor(PetEventKind::agentDone), std::nullopt);
}

TEST(PetPackTest, aPriorityOfMoreThanThirtyTwoBitsRanks) {
  const PetPack pack = decoded(R"({"reactions":[
      {"event":"idle","action":"low","priority":-3000000000},{"event":"idle","action":"none"},
      {"event":"idle","action":"one","priority":1},
      {"event":"idle","action":"most","priority":3000000000}]})");
  EXPECT_EQ(pack.actionID(PetEventKind::idle), QStringLiteral("most"));
}

TEST(PetPackTest, absentPriorityCountsAsZeroAndTheFirstListedWinsATie) {
  const PetPack pack = decoded(R"({"reactions":[{"event":"idle","action":"under","priority":-1},
      {"event":"idle","action":"first"},{"event":"idle","action":"second","priority":0},
      {"event":"idle","action":"third"}]})");
  EXPECT_EQ(pack.actionID(PetEventKind::idle), QStringLiteral("first"));
}

TEST(PetPackTest, anEventWithoutRuleGivesNothing) {
  const PetPack pack;
  EXPECT_FALSE(pack.actionID(PetEventKind::userPet));
  EXPECT_FALSE(pack.lineBucketFor(PetEventKind::userPet));
  EXPECT_TRUE(pack.notify(PetEventKind::userPet, true));
  EXPECT_FALSE(pack.notify(PetEventKind::userPet, false));
}

TEST(PetPackTest, frameSetOfAnUnknownActionIsItsName) {
  EXPECT_EQ(PetPack().frameSet(QStringLiteral("hop")), QStringLiteral("hop"));
}

TEST(PetPackTest, loopActionTakesTheFirstRuleOfTheMoodAndItsFrameSet) {
  const PetPack pack = decoded(R"({"actions":[{"id":"rest","frameSet":"rest_frames"},
      {"id":"idle","frameSet":"float"}],
      "loops":[{"mood":"calm","action":"rest"},{"mood":"calm","action":"other"}]})");
  EXPECT_EQ(pack.loopAction(QStringLiteral("calm")), QStringLiteral("rest_frames"));
  EXPECT_EQ(pack.loopAction(QStringLiteral("happy")), QStringLiteral("float"));
  EXPECT_TRUE(pack.hasLoopRule(QStringLiteral("calm")));
  EXPECT_FALSE(pack.hasLoopRule(QStringLiteral("happy")));
}

struct EventName {
  PetEventKind kind;
  const char16_t *name;
};

class PetEventKindTest : public testing::TestWithParam<EventName> {};

TEST_P(PetEventKindTest, hasItsName) {
  const QString name = QString::fromUtf16(GetParam().name);
  EXPECT_EQ(rawValue(GetParam().kind), name);
  EXPECT_EQ(petEventKind(name), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    All, PetEventKindTest,
    testing::Values(EventName{PetEventKind::agentDone, u"agent_done"},
                    EventName{PetEventKind::agentNeedsInput, u"agent_needs_input"},
                    EventName{PetEventKind::agentRunning, u"agent_running"},
                    EventName{PetEventKind::userPet, u"user_pet"},
                    EventName{PetEventKind::userReturned, u"user_returned"},
                    EventName{PetEventKind::approvalRequest, u"approval_request"},
                    EventName{PetEventKind::quotaHigh, u"quota_high"},
                    EventName{PetEventKind::quotaCritical, u"quota_critical"},
                    EventName{PetEventKind::restNudge, u"rest_nudge"},
                    EventName{PetEventKind::idle, u"idle"}));

struct BucketName {
  LineBucket bucket;
  const char16_t *name;
};

class LineBucketTest : public testing::TestWithParam<BucketName> {};

TEST_P(LineBucketTest, hasItsName) {
  const QString name = QString::fromUtf16(GetParam().name);
  EXPECT_EQ(rawValue(GetParam().bucket), name);
  EXPECT_EQ(lineBucket(name), GetParam().bucket);
}

INSTANTIATE_TEST_SUITE_P(All, LineBucketTest,
                         testing::Values(BucketName{LineBucket::done, u"done"},
                                         BucketName{LineBucket::needsInput, u"needsInput"},
                                         BucketName{LineBucket::petted, u"petted"},
                                         BucketName{LineBucket::digest, u"digest"},
                                         BucketName{LineBucket::usage, u"usage"},
                                         BucketName{LineBucket::reflect, u"reflect"},
                                         BucketName{LineBucket::rest, u"rest"}));

TEST(PetPackTest, encodingLeavesOutWhatIsAbsentAndWritesTheRest) {
  PetPack pack;
  pack.actions = {{QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("f"), true, {}, {}}};
  pack.reactions = {{PetEventKind::idle, QStringLiteral("a"), {}, false, {}}};
  pack.motion = PetPack::MotionProfile();
  const QJsonObject object = toJson(pack);
  EXPECT_THAT(object.keys(),
              ElementsAre(u"actions", u"autonomousActions", u"displayName", u"id", u"loops",
                          u"motion", u"personaPrompt", u"reactions", u"schemaVersion", u"tier"));
  EXPECT_THAT(object[u"actions"][0].toObject().keys(),
              ElementsAre(u"frameSet", u"id", u"label", u"loop", u"tags"));
  EXPECT_THAT(object[u"reactions"][0].toObject().keys(),
              ElementsAre(u"action", u"event", u"notify"));
  EXPECT_TRUE(object[u"motion"].toObject().isEmpty());
}

TEST(PetPackTest, aFullPackSurvivesARoundTrip) {
  PetPack pack;
  pack.schemaVersion = 3;
  pack.id = QStringLiteral("custom-1");
  pack.displayName = QStringLiteral("墨墨 \u0001\"\\");
  pack.personaPrompt = QStringLiteral("轻声说话\n");
  pack.generation = PetPack::Generation{QStringLiteral("ai-upload"), {}, {}, {QStringLiteral("q")}};
  pack.motion = PetPack::MotionProfile{QStringLiteral("floaty"), 0.1, 1.0 / 3, -4, 1e-300, 5};
  pack.actions = {{QStringLiteral("a"),
                   QStringLiteral("A"),
                   QStringLiteral("f"),
                   true,
                   {QStringLiteral("idle")},
                   QStringLiteral("p")}};
  pack.reactions = {
      {PetEventKind::quotaHigh, QStringLiteral("a"), LineBucket::reflect, true, -2147483647}};
  pack.loops = {{QStringLiteral("calm"), QStringLiteral("a")}};
  pack.autonomousActions = {QStringLiteral("a")};
  EXPECT_EQ(decoded(encoded(pack)), pack);
}

/// A text made of pieces of packs: more often nearly right than quite wrong.
QByteArray randomText(RandomSource &random) {
  static const std::array<QByteArray, 40> pieces{"{",
                                                 "}",
                                                 "[",
                                                 "]",
                                                 ",",
                                                 ":",
                                                 "\"id\"",
                                                 "\"actions\"",
                                                 "\"reactions\"",
                                                 "\"loops\"",
                                                 "\"motion\"",
                                                 "\"generation\"",
                                                 "\"tags\"",
                                                 "\"idle\"",
                                                 "\"agent_done\"",
                                                 "\"event\"",
                                                 "\"action\"",
                                                 "\"mood\"",
                                                 "\"priority\"",
                                                 "\"tier\"",
                                                 "1",
                                                 "-1",
                                                 "1e999",
                                                 "0.1",
                                                 "true",
                                                 "null",
                                                 "\"\"",
                                                 "\"\\ud83d\"",
                                                 "\"../..\"",
                                                 "\"frameSet\"",
                                                 "{\"id\":\"a\"}",
                                                 "{\"mood\":\"m\",\"action\":\"a\"}",
                                                 "{\"event\":\"idle\",\"action\":\"a\"}",
                                                 "\"breathPeriod\":",
                                                 "\"actions\":[",
                                                 "\"reactions\":[",
                                                 "\xff",
                                                 "\xc3",
                                                 " ",
                                                 "\n"};
  QByteArray text = random.below(4) == 0 ? "" : "{";
  const std::size_t length = random.below(30);
  for (std::size_t index = 0; index < length; ++index) {
    text += pieces.at(random.below(pieces.size()));
  }
  return text + (random.below(2) == 0 ? "" : "}");
}

TEST(PetPackTest, anyTextGivesAPackOrNoneAndEncodingIsStable) {
  SeededRandomSource random(7);
  int packs = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto pack = petPackFromJson(randomText(random));
    if (!pack) {
      continue;
    }
    ++packs;
    const QByteArray once = encoded(*pack);
    const auto again = petPackFromJson(once);
    ASSERT_TRUE(again.has_value());
    ASSERT_EQ(encoded(*again), once);
    ASSERT_EQ(*again, *pack);
  }
  EXPECT_GT(packs, 50);
}

TEST(PetPackTest, everyCutAndEveryFlippedByteOfAPackIsSurvived) {
  const QByteArray whole =
      R"({"id":"x","actions":[{"id":"a","tags":["idle"]}],"motion":{"tempo":1.5},
          "reactions":[{"event":"idle","action":"a","priority":3}],"loops":[{"mood":"m","action":"a"}]})";
  for (qsizetype at = 0; at < whole.size(); ++at) {
    EXPECT_FALSE(petPackFromJson(whole.first(at)).has_value());
    for (const char byte : {'\0', '"', '{', '\xff'}) {
      QByteArray changed = whole;
      changed[at] = byte;
      if (const auto pack = petPackFromJson(changed)) {
        EXPECT_EQ(encoded(decoded(encoded(*pack))), encoded(*pack));
      }
    }
  }
}

TEST(PetPackTest, deepNestingIsNoPack) {
  const QByteArray text = "{\"actions\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
  EXPECT_FALSE(petPackFromJson(text).has_value());
}

} // namespace
} // namespace morvo
