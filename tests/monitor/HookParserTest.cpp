#include "monitor/HookParser.h"

#include "base/Json.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

/// The signals of a line of the inbox, as one JSON array's worth of text.
QList<QJsonObject> signalsOf(const char *line) {
  const auto object = Json::parseObject(line);
  EXPECT_TRUE(object.has_value()) << line;
  return HookParser::signals(object.value_or(QJsonObject()));
}

QList<QJsonObject> one(const char *signal) { return {Json::parseObject(signal).value()}; }

struct Name {
  const char *name;
  const char *expected;
};

class HookParserEventName : public testing::TestWithParam<Name> {};

TEST_P(HookParserEventName, IsNormalized) {
  EXPECT_EQ(HookParser::normalizeEventName(QString::fromUtf8(GetParam().name)),
            QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, HookParserEventName,
    testing::Values(Name{"Stop", "done"}, Name{"SubagentStop", "done"}, Name{"stop", "done"},
                    Name{"AfterModel", "done"}, Name{"session.idle", "done"},
                    Name{"SessionEnd", "done"}, Name{"Notification", "needs_input"},
                    Name{"PermissionRequest", "needs_input"},
                    Name{"permission_request", "needs_input"}, Name{"needs_input", "needs_input"},
                    Name{"SubagentStart", ""}, Name{"PreToolUse", ""}, Name{"STOP", ""},
                    Name{"Stop ", ""}, Name{" Stop", ""}, Name{"sessionEnd", ""},
                    Name{"notification", ""}, Name{"done", ""}, Name{"", ""}));

TEST(HookParserTest, APermissionLineIsTheSignalUnchanged) {
  const char *line = R"({"kind":"perm","id":"0123456789ab","tool":"Bash","summary":"ls","x":[1]})";
  EXPECT_EQ(signalsOf(line), one(line));
}

TEST(HookParserTest, APermissionLineNeedsNothingBeyondItsKind) {
  EXPECT_EQ(signalsOf(R"({"kind":"perm"})"), one(R"({"kind":"perm"})"));
}

TEST(HookParserTest, APermissionLineIsNoHookLineWhateverItsEvent) {
  const char *line = R"({"kind":"perm","hook_event_name":"Stop","_src":"claude"})";
  EXPECT_EQ(signalsOf(line), one(line));
}

TEST(HookParserTest, AReadyMadeRunningLineGivesASignalWithoutAnEventName) {
  EXPECT_EQ(signalsOf(R"({"kind":"agent","status":"running"})"),
            one(R"({"kind":"agent","provider":"unknown","status":"running"})"));
}

TEST(HookParserTest, AReadyMadeLineKeepsItsStatusProviderAndLabelAlone) {
  EXPECT_EQ(
      signalsOf(
          R"({"kind":"agent","status":"anything","provider":"p","label":"l","_src":"s","more":1})"),
      one(R"({"kind":"agent","status":"anything","provider":"p","label":"l"})"));
}

TEST(HookParserTest, AReadyMadeLineWithAnEmptyStatusIsStillOne) {
  EXPECT_EQ(signalsOf(R"({"kind":"agent","status":"","label":""})"),
            one(R"({"kind":"agent","provider":"unknown","status":"","label":""})"));
}

TEST(HookParserTest, AReadyMadeLineDropsAProviderOrALabelThatIsNoText) {
  EXPECT_EQ(signalsOf(R"({"kind":"agent","status":"done","provider":7,"label":null})"),
            one(R"({"kind":"agent","provider":"unknown","status":"done"})"));
}

TEST(HookParserTest, AnAgentLineWithoutATextualStatusIsReadAsAHookLine) {
  EXPECT_EQ(signalsOf(R"({"kind":"agent","status":1,"event":"Stop","_src":"codex"})"),
            one(R"({"kind":"agent","provider":"codex","status":"done"})"));
  EXPECT_TRUE(signalsOf(R"({"kind":"agent","status":1})").isEmpty());
}

TEST(HookParserTest, ADoneEventHasNoLabelEvenWithAMessage) {
  EXPECT_EQ(signalsOf(R"({"hook_event_name":"SubagentStop","_src":"claude","message":"m"})"),
            one(R"({"kind":"agent","provider":"claude","status":"done"})"));
}

TEST(HookParserTest, UnknownEventsGiveNothing) {
  EXPECT_TRUE(signalsOf(R"({"hook_event_name":"SubagentStart","_src":"claude"})").isEmpty());
  EXPECT_TRUE(signalsOf(R"({"hook_event_name":"PreToolUse","_src":"claude"})").isEmpty());
}

TEST(HookParserTest, ALineWithoutAnEventNameGivesNothing) {
  EXPECT_TRUE(signalsOf("{}").isEmpty());
  EXPECT_TRUE(signalsOf(R"({"_src":"claude"})").isEmpty());
  EXPECT_TRUE(signalsOf(R"({"kind":"other","status":"done"})").isEmpty());
  EXPECT_TRUE(signalsOf(R"({"hook_event_name":["Stop"]})").isEmpty());
}

TEST(HookParserTest, TheFirstTextualEventKeyNamesTheEvent) {
  const auto done = one(R"({"kind":"agent","provider":"unknown","status":"done"})");
  EXPECT_EQ(signalsOf(R"({"hook_event_name":"Stop","hookEventType":"x","event":"y"})"), done);
  EXPECT_EQ(signalsOf(R"({"hook_event_name":1,"hookEventType":"Stop","event":"y"})"), done);
  EXPECT_EQ(signalsOf(R"({"hookEventType":null,"event":"Stop"})"), done);
  EXPECT_TRUE(signalsOf(R"({"hook_event_name":"x","event":"Stop"})").isEmpty());
}

TEST(HookParserTest, AnEmptyEventNameIsNotPassedOverForALaterKey) {
  EXPECT_TRUE(signalsOf(R"({"hook_event_name":"","event":"Stop"})").isEmpty());
}

struct Source {
  const char *line;
  const char *provider;
};

class HookParserSource : public testing::TestWithParam<Source> {};

TEST_P(HookParserSource, IsTheFirstTextualKey) {
  const auto found = signalsOf(GetParam().line);
  ASSERT_EQ(found.size(), 1);
  EXPECT_EQ(found.first().value(QStringLiteral("provider")).toString(),
            QString::fromUtf8(GetParam().provider));
}

INSTANTIATE_TEST_SUITE_P(
    All, HookParserSource,
    testing::Values(
        Source{R"({"event":"Stop","_src":"a","ide_name":"b","client":"c","source_app":"d"})", "a"},
        Source{R"({"event":"Stop","ide_name":"b","client":"c","source_app":"d"})", "b"},
        Source{R"({"event":"Stop","client":"c","source_app":"d"})", "c"},
        Source{R"({"event":"Stop","source_app":"d"})", "d"},
        Source{R"({"event":"Stop","_src":null,"ide_name":3,"client":"c"})", "c"},
        Source{R"({"event":"Stop","_src":""})", ""}, Source{R"({"event":"Stop"})", "unknown"}));

struct Label {
  const char *line;
  const char *label;
};

class HookParserLabel : public testing::TestWithParam<Label> {};

TEST_P(HookParserLabel, TellsWhatIsNeeded) {
  const auto found = signalsOf(GetParam().line);
  ASSERT_EQ(found.size(), 1);
  EXPECT_EQ(found.first().value(QStringLiteral("status")).toString(),
            QStringLiteral("needs_input"));
  EXPECT_EQ(found.first().value(QStringLiteral("label")).toString(),
            QString::fromUtf8(GetParam().label));
}

INSTANTIATE_TEST_SUITE_P(
    All, HookParserLabel,
    testing::Values(
        Label{R"({"event":"Notification","message":"m","tool_input":{"description":"d"}})", "m"},
        Label{R"({"event":"Notification","message":"","tool_input":{"description":"d"}})", ""},
        Label{R"({"event":"Notification","message":5,"tool_input":{"description":"d"}})", "d"},
        Label{R"({"event":"PermissionRequest","tool_input":{"description":"d"}})", "d"},
        Label{R"({"event":"PermissionRequest"})", "等待你批准工具调用"},
        Label{R"({"event":"permission_request"})", "等待你批准工具调用"},
        Label{R"({"event":"PermissionRequest","tool_input":"text"})", "等待你批准工具调用"},
        Label{R"({"event":"PermissionRequest","tool_input":{"description":1}})",
              "等待你批准工具调用"},
        Label{R"({"event":"Notification"})", "等待你确认"},
        Label{R"({"event":"needs_input"})", "等待你确认"}));

TEST(HookParserTest, NoHookLineYieldsARunningStatus) {
  for (const char *name : {"running", "Running", "SessionStart", "UserPromptSubmit"}) {
    EXPECT_TRUE(
        HookParser::signals({{QStringLiteral("event"), QString::fromUtf8(name)}}).isEmpty());
  }
}

TEST(HookParserTest, ALoneSurrogateInAMessageIsCarriedAlong) {
  const auto found = signalsOf(R"({"event":"Notification","message":"a\ud83d"})");
  ASSERT_EQ(found.size(), 1);
  EXPECT_EQ(found.first().value(QStringLiteral("label")).toString().size(), 2);
}

} // namespace
} // namespace morvo
