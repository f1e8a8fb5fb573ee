#include "monitor/ConnectCommand.h"
#include "hooks/HookHome.h"
#include "monitor/AgentConnectors.h"

#include <QDir>
#include <QTextStream>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::HookHome;
using Json = nlohmann::json;

class ConnectCommandTest : public testing::Test {
protected:
  int run(const QString &words) {
    m_out.clear();
    m_err.clear();
    QTextStream out(&m_out);
    QTextStream err(&m_err);
    return ConnectCommand::run(words.split(u' ', Qt::SkipEmptyParts),
                               AgentConnectors::all(m_home.context()), out, err);
  }
  [[nodiscard]] Json outJson() const { return Json::parse(m_out.toStdString(), nullptr, false); }

  HookHome m_home{QStringLiteral("plain")};
  QString m_out;
  QString m_err;
};

TEST_F(ConnectCommandTest, ConnectsAndDisconnectsTheNamedAgentOnly) {
  EXPECT_EQ(run(QStringLiteral("connect gemini")), ConnectCommand::succeeded);
  EXPECT_EQ(m_out, QStringLiteral("已连接 Gemini CLI（%1）\n")
                       .arg(m_home.path(QStringLiteral(".gemini/settings.json"))));
  EXPECT_EQ(m_err, QString());
  EXPECT_TRUE(m_home.get(QStringLiteral(".gemini/settings.json")).contains("hook.sh gemini"));
  EXPECT_EQ(m_home.get(QStringLiteral(".claude/settings.json")), "<none>");
  EXPECT_EQ(run(QStringLiteral("disconnect gemini")), ConnectCommand::succeeded);
  EXPECT_TRUE(m_out.startsWith(QStringLiteral("已断开 Gemini CLI")));
  EXPECT_FALSE(m_home.get(QStringLiteral(".gemini/settings.json")).contains("hook.sh"));
}

TEST_F(ConnectCommandTest, AfterConnectingCodexItTellsToTrustTheHooks) {
  EXPECT_EQ(run(QStringLiteral("connect codex")), ConnectCommand::succeeded);
  EXPECT_TRUE(m_out.contains(QStringLiteral("Hooks need review")));
}

TEST_F(ConnectCommandTest, StatusListsEveryAgentInOrder) {
  ASSERT_EQ(run(QStringLiteral("connect claude")), ConnectCommand::succeeded);
  EXPECT_EQ(run(QStringLiteral("status")), ConnectCommand::succeeded);
  const QStringList lines = m_out.split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(static_cast<std::size_t>(lines.size()), AgentConnectors::all({}).size());
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Claude Code：已连接（/")));
  EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Codex：未连接（/")));
  EXPECT_TRUE(lines[2].startsWith(QStringLiteral("Gemini CLI：未连接（/")));
  EXPECT_TRUE(lines[3].startsWith(QStringLiteral("Cursor：未连接（/")));
}

TEST_F(ConnectCommandTest, StatusForProgramsHasEnglishKeys) {
  ASSERT_EQ(run(QStringLiteral("connect codex")), ConnectCommand::succeeded);
  EXPECT_EQ(run(QStringLiteral("status --json")), ConnectCommand::succeeded);
  const Json agents = outJson()["agents"];
  ASSERT_EQ(agents.size(), AgentConnectors::all({}).size());
  EXPECT_EQ(agents[0],
            (Json{{"id", "claude"},
                  {"name", "Claude Code"},
                  {"connected", false},
                  {"file", m_home.path(QStringLiteral(".claude/settings.json")).toStdString()},
                  {"obstacles", Json::array()}}));
  EXPECT_EQ(agents[1]["connected"], true);
  EXPECT_EQ(agents[1]["obstacles"].size(), 1U);
}

TEST_F(ConnectCommandTest, StatusShowsObstacles) {
  ASSERT_EQ(run(QStringLiteral("connect cursor")), ConnectCommand::succeeded);
  ASSERT_TRUE(QFile::remove(m_home.path(QStringLiteral(".morvo/hook.sh"))));
  EXPECT_EQ(run(QStringLiteral("status")), ConnectCommand::succeeded);
  EXPECT_TRUE(m_out.contains(QStringLiteral("\n  ⚠ 缺少钩子脚本 ")));
}

TEST_F(ConnectCommandTest, ConnectForProgramsTellsTheStateAfterwards) {
  EXPECT_EQ(run(QStringLiteral("--json connect claude")), ConnectCommand::succeeded);
  EXPECT_EQ(outJson()["ok"], true);
  EXPECT_EQ(outJson()["connected"], true);
  EXPECT_FALSE(outJson().contains("error"));
  EXPECT_EQ(run(QStringLiteral("disconnect claude --json")), ConnectCommand::succeeded);
  EXPECT_EQ(outJson()["connected"], false);
}

TEST_F(ConnectCommandTest, AFailureIsToldAndGivesOne) {
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(QStringLiteral(".claude/settings.json")));
  EXPECT_EQ(run(QStringLiteral("connect claude")), ConnectCommand::failed);
  EXPECT_EQ(m_out, QString());
  EXPECT_TRUE(m_err.startsWith(QStringLiteral("连接 Claude Code 失败：读不了 /")));
  EXPECT_EQ(run(QStringLiteral("disconnect claude")), ConnectCommand::failed);
  EXPECT_TRUE(m_err.startsWith(QStringLiteral("断开 Claude Code 失败：")));
  EXPECT_EQ(run(QStringLiteral("connect claude --json")), ConnectCommand::failed);
  EXPECT_EQ(outJson()["ok"], false);
  EXPECT_TRUE(outJson()["error"].is_string());
}

class WrongUsageTest : public ConnectCommandTest,
                       public testing::WithParamInterface<const char *> {};

TEST_P(WrongUsageTest, TellsTheUsageAndChangesNothing) {
  EXPECT_EQ(run(QString::fromUtf8(GetParam())), ConnectCommand::wrongUsage);
  EXPECT_EQ(m_out, QString());
  EXPECT_TRUE(m_err.contains(QStringLiteral("connect <claude|codex|gemini|cursor>")));
  EXPECT_EQ(m_home.get(QStringLiteral(".morvo/hook.sh")), "<none>");
}

INSTANTIATE_TEST_SUITE_P(Words, WrongUsageTest,
                         testing::Values("", "connect", "connect nobody", "connect Claude",
                                         "connect claude codex", "status claude", "dance claude",
                                         "--json", "connect --yes claude"));

TEST(ConnectCommandWordsTest, OnlyTheThreeCommandsAreMeant) {
  EXPECT_TRUE(ConnectCommand::isMeant({QStringLiteral("status")}));
  EXPECT_TRUE(ConnectCommand::isMeant({QStringLiteral("connect"), QStringLiteral("x")}));
  EXPECT_TRUE(ConnectCommand::isMeant({QStringLiteral("disconnect")}));
  EXPECT_FALSE(ConnectCommand::isMeant({QStringLiteral("morvopet://connect")}));
  EXPECT_FALSE(ConnectCommand::isMeant({}));
}

} // namespace
} // namespace morvo
