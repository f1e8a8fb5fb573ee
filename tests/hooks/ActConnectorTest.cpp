#include "monitor/ActConnector.h"
#include "hooks/HookHome.h"
#include "monitor/ClaudeConnector.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::FailingFileLayer;
using test::HookHome;
using Json = nlohmann::json;

class ActConnectorTest : public testing::Test {
protected:
  [[nodiscard]] QStringList decisions() const {
    return QDir(m_home.path(QStringLiteral(".morvo/decisions")))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }
  [[nodiscard]] Json group() const {
    return {{"matcher", "Bash|Write|Edit|MultiEdit|NotebookEdit"},
            {"hooks",
             Json::array({{{"type", "command"}, {"command", m_act.command().toStdString()}}})}};
  }

  const QString m_settings = QStringLiteral(".claude/settings.json");
  HookHome m_home;
  ActConnector m_act{m_home.context()};
};

TEST_F(ActConnectorTest, AddsOneGroupWithTheFixedMatcher) {
  EXPECT_EQ(m_act.command(), m_home.path(QStringLiteral(".morvo/perm.sh claude")));
  const Json once = m_act.added(Json::object());
  EXPECT_EQ(once, (Json{{"hooks", {{"PreToolUse", Json::array({group()})}}}}));
  EXPECT_EQ(m_act.added(once), once);
}

TEST_F(ActConnectorTest, RemovingLeavesTheEntriesOfOthers) {
  const Json settings = Json::parse(
      R"({"hooks": {"PreToolUse": [{"matcher": "Bash", "hooks": [{"command": "mine"}]}]}})");
  EXPECT_EQ(m_act.removed(m_act.added(settings)), settings);
  EXPECT_EQ(m_act.removed(m_act.added(Json{{"a", 1}})), (Json{{"a", 1}}));
}

TEST_F(ActConnectorTest, OurHookInAGroupOfTheUsersIsFoundAndTakenOutAlone) {
  Json settings = {{"hooks", {{"PreToolUse", Json::array({group()})}}}};
  settings["hooks"]["PreToolUse"][0]["hooks"].push_back({{"command", "mine"}});
  EXPECT_EQ(m_act.added(settings), settings);
  EXPECT_EQ(m_act.removed(settings)["hooks"]["PreToolUse"][0]["hooks"],
            Json::parse(R"([{"command": "mine"}])"));
}

TEST_F(ActConnectorTest, IsIndependentOfTheEventHooks) {
  ClaudeConnector claude(m_home.context());
  ASSERT_TRUE(claude.connect().has_value());
  ASSERT_TRUE(m_act.setConnected(true).has_value());
  ASSERT_TRUE(claude.disconnect().has_value());
  EXPECT_EQ(m_home.json(m_settings), (Json{{"hooks", {{"PreToolUse", Json::array({group()})}}}}));
  ASSERT_TRUE(claude.connect().has_value());
  ASSERT_TRUE(m_act.setConnected(false).has_value());
  EXPECT_TRUE(claude.isConnected());
  EXPECT_FALSE(m_home.json(m_settings)["hooks"].contains("PreToolUse"));
}

TEST_F(ActConnectorTest, TurningOnInstallsTheScriptsFirst) {
  ASSERT_TRUE(m_act.setConnected(true).has_value());
  EXPECT_EQ(m_home.mode(QStringLiteral(".morvo/perm.sh")), 0755U);
}

TEST_F(ActConnectorTest, WhenTheScriptsCannotBeInstalledTheSettingsStay) {
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(QStringLiteral(".morvo/perm.sh/x")));
  EXPECT_FALSE(m_act.setConnected(true).has_value());
  EXPECT_EQ(m_home.get(m_settings), "<none>");
}

TEST_F(ActConnectorTest, TurningOffInstallsNothing) {
  ASSERT_TRUE(m_act.setConnected(false).has_value());
  EXPECT_EQ(m_home.get(QStringLiteral(".morvo/perm.sh")), "<none>");
}

TEST_F(ActConnectorTest, SettingsThatCannotBeReadStay) {
  m_home.put(m_settings, "{\"a\":\"\xFF\"}");
  EXPECT_FALSE(m_act.setConnected(true).has_value());
  EXPECT_FALSE(m_act.setConnected(false).has_value());
  EXPECT_EQ(m_home.get(m_settings), "{\"a\":\"\xFF\"}");
}

TEST_F(ActConnectorTest, ADecisionIsExactlyItsWordWithoutALineEnd) {
  m_act.decide(QStringLiteral("0123456789ab"), true);
  EXPECT_EQ(m_home.get(QStringLiteral(".morvo/decisions/0123456789ab.json")),
            R"({"decision":"allow"})");
  m_act.decide(QStringLiteral("0123456789ab"), false);
  EXPECT_EQ(m_home.get(QStringLiteral(".morvo/decisions/0123456789ab.json")),
            R"({"decision":"deny"})");
  EXPECT_EQ(decisions(), QStringList{QStringLiteral("0123456789ab.json")});
}

TEST_F(ActConnectorTest, DecisionsAreForTheUserAlone) {
  m_act.decide(QStringLiteral("a"), true);
  EXPECT_EQ(m_home.mode(QStringLiteral(".morvo/decisions")), 0700U);
  EXPECT_EQ(m_home.mode(QStringLiteral(".morvo/decisions/a.json")), 0600U);
}

TEST_F(ActConnectorTest, ADecisionDoesNotWaitForTheDisk) {
  FailingFileLayer files;
  QStringList calls;
  files.beforeEach([&calls](QStringView name) { calls.append(name.toString()); });
  HookContext context = m_home.context();
  context.files = &files;
  ActConnector(context).decide(QStringLiteral("a"), true);
  EXPECT_TRUE(calls.contains(QStringLiteral("rename")));
  EXPECT_FALSE(calls.contains(QStringLiteral("fsync")));
}

TEST_F(ActConnectorTest, ALinkInADecisionsPlaceLeadsNowhere) {
  m_home.put(QStringLiteral("target"), "theirs");
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(QStringLiteral(".morvo/decisions")));
  const QString link = m_home.path(QStringLiteral(".morvo/decisions/a.json"));
  ASSERT_TRUE(QFile::link(m_home.path(QStringLiteral("target")), link));
  m_act.decide(QStringLiteral("a"), true);
  EXPECT_EQ(m_home.get(QStringLiteral("target")), "theirs");
  EXPECT_TRUE(QFileInfo(link).isSymLink());
}

class ForgedIdTest : public ActConnectorTest, public testing::WithParamInterface<QString> {};

TEST_P(ForgedIdTest, WritesNothingAnywhere) {
  m_act.decide(GetParam(), true);
  EXPECT_EQ(decisions(), QStringList());
  EXPECT_EQ(
      QDir(m_home.home().path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
      QStringList());
}

INSTANTIATE_TEST_SUITE_P(Ids, ForgedIdTest,
                         testing::Values(QString(), QStringLiteral("../../evil"),
                                         QStringLiteral("/etc/x"), QStringLiteral("a/b"),
                                         QStringLiteral("."), QStringLiteral(".."),
                                         QStringLiteral(".hidden"), QStringLiteral("a\nb"),
                                         QString(QChar(u'\0')), QStringLiteral("a\u007F"),
                                         QString(65, u'a'), QString(22, u'长')));

TEST_F(ActConnectorTest, TheLongestIdIsSixtyFourBytes) {
  m_act.decide(QString(64, u'a'), true);
  EXPECT_EQ(decisions().size(), 1);
}

TEST_F(ActConnectorTest, ADecisionThatCannotBeWrittenIsNoFailure) {
  m_home.put(QStringLiteral(".morvo/decisions"), "a file in the folder's place");
  m_act.decide(QStringLiteral("a"), true);
  EXPECT_EQ(m_home.get(QStringLiteral(".morvo/decisions")), "a file in the folder's place");
}

} // namespace
} // namespace morvo
