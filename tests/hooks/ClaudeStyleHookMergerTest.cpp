#include "monitor/ClaudeStyleHookMerger.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using Json = nlohmann::json;

const QString ours = QStringLiteral("/home/name/.morvo/hook.sh claude");
const QStringList events = {QStringLiteral("Stop"), QStringLiteral("Notification")};

Json parsed(const char *text) { return Json::parse(text); }

Json added(const Json &settings) {
  return ClaudeStyleHookMerger::withAdded(settings, events, ours);
}

Json removed(const Json &settings) {
  return ClaudeStyleHookMerger::withRemoved(settings, events, ours);
}

TEST(ClaudeStyleHookMergerTest, AddsOneGroupToEachEvent) {
  EXPECT_EQ(added(Json::object()), parsed(R"({"hooks": {
    "Stop": [{"hooks": [{"type": "command", "command": "/home/name/.morvo/hook.sh claude"}]}],
    "Notification": [{"hooks": [{"type": "command",
                                 "command": "/home/name/.morvo/hook.sh claude"}]}]}})"));
}

TEST(ClaudeStyleHookMergerTest, AddingTwiceChangesNothing) {
  const Json once = added(parsed(R"({"model": "x"})"));
  EXPECT_EQ(added(once), once);
}

TEST(ClaudeStyleHookMergerTest, RemovingLeavesNoGroupAndNoEmptyHooks) {
  EXPECT_EQ(removed(added(parsed(R"({"model": "x"})"))), parsed(R"({"model": "x"})"));
}

TEST(ClaudeStyleHookMergerTest, AUsersHookInTheSameGroupSurvives) {
  const Json settings = parsed(R"({"hooks": {"Stop": [{"matcher": "m", "hooks": [
    {"type": "command", "command": "mine"},
    {"type": "command", "command": "/home/name/.morvo/hook.sh claude", "timeout": 9}]}]}})");
  const Json both = added(settings);
  EXPECT_EQ(both["hooks"]["Stop"], settings["hooks"]["Stop"]);
  EXPECT_EQ(removed(both), parsed(R"({"hooks": {"Stop": [{"matcher": "m", "hooks": [
    {"type": "command", "command": "mine"}]}]}})"));
}

TEST(ClaudeStyleHookMergerTest, AUsersGroupInTheSameEventKeepsItsPlace) {
  const Json settings = parsed(R"({"hooks": {"Stop": [{"hooks": [{"command": "mine"}]}]}})");
  const Json both = added(settings);
  EXPECT_EQ(both["hooks"]["Stop"].size(), 2U);
  EXPECT_EQ(both["hooks"]["Stop"][0], settings["hooks"]["Stop"][0]);
  EXPECT_EQ(removed(both), settings);
}

TEST(ClaudeStyleHookMergerTest, AScriptOfTheSameNameElsewhereIsNotOurs) {
  const Json settings =
      parsed(R"({"hooks": {"Stop": [{"hooks": [{"command": "/other/.morvo/hook.sh claude"}]}]}})");
  EXPECT_FALSE(ClaudeStyleHookMerger::isConnected(settings, events, ours));
  EXPECT_EQ(removed(settings), settings);
  EXPECT_EQ(added(settings)["hooks"]["Stop"].size(), 2U);
}

TEST(ClaudeStyleHookMergerTest, EventsOfOthersAreNotTouched) {
  const Json settings = parsed(R"({"hooks": {"PreToolUse": [], "Odd": "text"}})");
  EXPECT_EQ(removed(added(settings)), settings);
}

TEST(ClaudeStyleHookMergerTest, TheFlatFormCountsAndGoesToo) {
  const Json flat = parsed(R"([{"command": "/home/name/.morvo/hook.sh claude"}])");
  EXPECT_TRUE(ClaudeStyleHookMerger::groupsContain(flat, ours));
  EXPECT_EQ(removed(Json{{"hooks", {{"Stop", flat}}}}), Json::object());
}

TEST(ClaudeStyleHookMergerTest, AForeignFlatEntrySurvivesRemoval) {
  const Json settings = parsed(R"({"hooks": {"Stop": [{"command": "mine"}]}})");
  EXPECT_EQ(removed(added(settings)), settings);
}

TEST(ClaudeStyleHookMergerTest, WhatWasEmptyBeforeRemovalStays) {
  for (const char *text : {R"({"hooks": {"Stop": [{"hooks": []}], "Notification": []}})",
                           R"({"hooks": {}})", R"({"hooks": {"Stop": []}})"}) {
    EXPECT_EQ(removed(parsed(text)), parsed(text));
  }
  const Json settings = parsed(R"({"hooks": {"Stop": [{"matcher": "m", "hooks": []}]}})");
  EXPECT_EQ(removed(added(settings)), settings);
}

TEST(ClaudeStyleHookMergerTest, AnEmptyEventThatWeFilledGoesWithOurs) {
  EXPECT_EQ(removed(added(parsed(R"({"hooks": {"Stop": []}})"))), Json::object());
}

TEST(ClaudeStyleHookMergerTest, ConnectedMeansAnyOfTheStopKeys) {
  const Json settings =
      ClaudeStyleHookMerger::withAdded(Json::object(), {QStringLiteral("AfterModel")}, ours);
  EXPECT_TRUE(ClaudeStyleHookMerger::isConnected(
      settings, {QStringLiteral("Stop"), QStringLiteral("AfterModel")}, ours));
  EXPECT_FALSE(ClaudeStyleHookMerger::isConnected(settings, {QStringLiteral("Stop")}, ours));
}

class WrongTypeTest : public testing::TestWithParam<const char *> {};

TEST_P(WrongTypeTest, HooksOfAnotherTypeAreReplacedByAddingAndLeftByRemoving) {
  const Json settings{{"hooks", parsed(GetParam())}, {"kept", 1}};
  EXPECT_FALSE(ClaudeStyleHookMerger::isConnected(settings, events, ours));
  const Json expected{{"hooks", added(Json::object())["hooks"]}, {"kept", 1}};
  EXPECT_EQ(added(settings), expected);
  EXPECT_EQ(removed(settings), settings);
}

INSTANTIATE_TEST_SUITE_P(Values, WrongTypeTest,
                         testing::Values("null", "1", "\"t\"", "[1]", "true"));

class WrongEventTypeTest : public testing::TestWithParam<const char *> {};

TEST_P(WrongEventTypeTest, AnEventOfAnotherTypeIsReplacedByAddingAndLeftByRemoving) {
  const Json settings{{"hooks", {{"Stop", parsed(GetParam())}, {"PreToolUse", Json::array()}}}};
  EXPECT_EQ(added(settings)["hooks"]["Stop"], added(Json::object())["hooks"]["Stop"]);
  EXPECT_EQ(removed(settings), settings);
}

INSTANTIATE_TEST_SUITE_P(Values, WrongEventTypeTest,
                         testing::Values("null", "1", "\"t\"", "{\"a\": 1}"));

TEST(ClaudeStyleHookMergerTest, OddEntriesAreKeptAndNeverTakenForOurs) {
  const Json settings = parsed(R"({"hooks": {"Stop": [
    7, null, "text", [], {"hooks": "text"}, {"hooks": [1, "x", {"command": 5}]},
    {"command": ["/home/name/.morvo/hook.sh claude"]}]}})");
  EXPECT_FALSE(ClaudeStyleHookMerger::isConnected(settings, events, ours));
  EXPECT_EQ(removed(added(settings)), settings);
}

} // namespace
} // namespace morvo
