#include "hooks/HookHome.h"
#include "monitor/ActConnector.h"
#include "monitor/AgentConnectors.h"
#include "monitor/ClaudeConnector.h"
#include "monitor/CodexConnector.h"
#include "monitor/HookScript.h"

#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace morvo {
namespace {

using test::HookHome;
using Json = nlohmann::json;

struct Agent {
  QString id;
  QString name;
  QString file;
  QString variable;
  QStringList events;
  /// The entry expected in the event, with "COMMAND" for the command.
  QString entry;
};

const QString group = QStringLiteral(R"({"hooks": [{"type": "command", "command": "COMMAND"}]})");

std::vector<Agent> agents() {
  return {
      {QStringLiteral("claude"),
       QStringLiteral("Claude Code"),
       QStringLiteral(".claude/settings.json"),
       QStringLiteral("MORVO_SETTINGS_PATH"),
       {QStringLiteral("Stop"), QStringLiteral("SubagentStop"), QStringLiteral("Notification")},
       group},
      {QStringLiteral("codex"),
       QStringLiteral("Codex"),
       QStringLiteral(".codex/hooks.json"),
       QStringLiteral("MORVO_CODEX_HOOKS_PATH"),
       {QStringLiteral("Stop"), QStringLiteral("SubagentStop"),
        QStringLiteral("PermissionRequest")},
       QStringLiteral(R"({"hooks": [{"type": "command", "command": "COMMAND", "timeout": 5,
                          "statusMessage": "Morvo 正在同步 Codex 事件"}]})")},
      {QStringLiteral("gemini"),
       QStringLiteral("Gemini CLI"),
       QStringLiteral(".gemini/settings.json"),
       QStringLiteral("MORVO_GEMINI_SETTINGS_PATH"),
       {QStringLiteral("Stop"), QStringLiteral("AfterModel"), QStringLiteral("Notification"),
        QStringLiteral("SessionEnd")},
       group},
      {QStringLiteral("cursor"),
       QStringLiteral("Cursor"),
       QStringLiteral(".cursor/hooks.json"),
       QStringLiteral("MORVO_CURSOR_HOOKS_PATH"),
       {QStringLiteral("stop"), QStringLiteral("Stop"), QStringLiteral("sessionEnd"),
        QStringLiteral("SessionEnd")},
       QStringLiteral(R"({"command": "COMMAND"})")},
  };
}

std::unique_ptr<AgentConnector> connector(const QString &id, const HookContext &context) {
  for (auto &each : AgentConnectors::all(context)) {
    if (each->id() == id) {
      return std::move(each);
    }
  }
  return nullptr;
}

class AgentConnectorTest : public testing::TestWithParam<Agent> {
protected:
  [[nodiscard]] std::unique_ptr<AgentConnector> make() {
    return connector(GetParam().id, m_home.context());
  }
  void connect() {
    const auto outcome = make()->connect();
    ASSERT_TRUE(outcome.has_value()) << outcome.error().message().toStdString();
  }
  void disconnect() { ASSERT_TRUE(make()->disconnect().has_value()); }
  [[nodiscard]] QString file() const { return GetParam().file; }
  [[nodiscard]] Json expectedEntry(const QString &event) {
    QString text = GetParam().entry;
    text.replace(QStringLiteral("COMMAND"), make()->command());
    Json entry = Json::parse(text.toStdString());
    if (event == QStringLiteral("PermissionRequest")) {
      entry["matcher"] = "*";
    }
    return entry;
  }

  HookHome m_home;
};

INSTANTIATE_TEST_SUITE_P(Agents, AgentConnectorTest, testing::ValuesIn(agents()),
                         [](const auto &info) { return info.param.id.toStdString(); });

TEST_P(AgentConnectorTest, TellsItsNameFileAndCommand) {
  const auto agent = make();
  EXPECT_EQ(agent->name(), GetParam().name);
  EXPECT_EQ(agent->file(), m_home.path(file()));
  EXPECT_EQ(agent->command(), m_home.path(QStringLiteral(".morvo/hook.sh")) + u' ' + GetParam().id);
}

TEST_P(AgentConnectorTest, ConnectingCreatesTheFileWithOneEntryAnEvent) {
  EXPECT_FALSE(make()->isConnected());
  connect();
  EXPECT_TRUE(make()->isConnected());
  EXPECT_TRUE(HookScript::alreadyInstalled(m_home.home()));
  Json hooks = Json::object();
  for (const QString &event : GetParam().events) {
    hooks[event.toStdString()] = Json::array({expectedEntry(event)});
  }
  Json expected{{"hooks", hooks}};
  if (GetParam().id == QStringLiteral("cursor")) {
    expected["version"] = 1;
  }
  EXPECT_EQ(m_home.json(file()), expected);
}

TEST_P(AgentConnectorTest, ConnectingTwiceLeavesTheSameBytes) {
  connect();
  const QByteArray once = m_home.get(file());
  connect();
  EXPECT_EQ(m_home.get(file()), once);
}

TEST_P(AgentConnectorTest, DisconnectingLeavesNoEntryAndNoEmptyHooks) {
  connect();
  connect();
  disconnect();
  EXPECT_FALSE(make()->isConnected());
  EXPECT_FALSE(m_home.json(file()).contains("hooks"));
  EXPECT_FALSE(m_home.get(file()).contains("hook.sh"));
}

TEST_P(AgentConnectorTest, DisconnectingWithoutAFileWritesOneWithoutHooks) {
  disconnect();
  EXPECT_EQ(m_home.get(file()), "{}\n");
}

TEST_P(AgentConnectorTest, UnrelatedKeysAndTheUsersHooksSurvive) {
  const char *text = R"({"model": "o", "version": 7, "deep": {"a": [1, null, "字"]},
    "hooks": {"Stop": [{"hooks": [{"type": "command", "command": "mine"}]}], "Other": [{}]}})";
  m_home.put(file(), text);
  connect();
  Json connected = m_home.json(file());
  EXPECT_EQ(connected["hooks"]["Stop"][0]["hooks"][0]["command"], "mine");
  EXPECT_EQ(connected["version"], 7);
  disconnect();
  EXPECT_EQ(m_home.json(file()), Json::parse(text));
}

TEST_P(AgentConnectorTest, ABrokenFileIsReplacedByAFreshOne) {
  m_home.put(file(), "{ broken");
  EXPECT_TRUE(make()->obstacles().join(u' ').contains(QStringLiteral("不是 JSON 对象")));
  connect();
  EXPECT_TRUE(make()->isConnected());
  EXPECT_FALSE(m_home.get(file()).contains("broken"));
}

TEST_P(AgentConnectorTest, AFileThatCannotBeReadIsLeftAlone) {
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(file()));
  const auto connected = make()->connect();
  ASSERT_FALSE(connected.has_value());
  EXPECT_EQ(connected.error().kind, HookError::Kind::fileUnreadable);
  EXPECT_EQ(connected.error().path, m_home.path(file()));
  EXPECT_FALSE(make()->disconnect().has_value());
  EXPECT_FALSE(make()->isConnected());
  EXPECT_TRUE(QFileInfo(m_home.path(file())).isDir());
  EXPECT_EQ(make()->obstacles().size(), 1);
  EXPECT_EQ(m_home.get(QStringLiteral(".codex/config.toml")), "<none>");
}

TEST_P(AgentConnectorTest, AFileThatIsTooDeepOrNoUtf8IsLeftAlone) {
  for (const QByteArray &text : {"{\"a\":" + QByteArray(600, '[') + QByteArray(600, ']') + "}",
                                 QByteArray("{\"a\":\"\xFF\"}")}) {
    m_home.put(file(), text);
    EXPECT_FALSE(make()->connect().has_value());
    EXPECT_FALSE(make()->disconnect().has_value());
    EXPECT_EQ(m_home.get(file()), text);
  }
}

TEST_P(AgentConnectorTest, TheFileKeepsItsModeAndItsLink) {
  m_home.put(QStringLiteral("dotfiles/real.json"), "{}");
  const QString real = m_home.path(QStringLiteral("dotfiles/real.json"));
  ASSERT_EQ(::chmod(QFile::encodeName(real).constData(), 0600), 0);
  ASSERT_TRUE(QDir().mkpath(QFileInfo(m_home.path(file())).path()));
  ASSERT_TRUE(QFile::link(real, m_home.path(file())));
  connect();
  EXPECT_TRUE(QFileInfo(m_home.path(file())).isSymLink());
  EXPECT_EQ(m_home.mode(QStringLiteral("dotfiles/real.json")), 0600U);
  EXPECT_TRUE(m_home.json(QStringLiteral("dotfiles/real.json")).contains("hooks"));
}

TEST_P(AgentConnectorTest, TheVariableNamesAnotherFile) {
  const QString other = m_home.path(QStringLiteral("other/名.json"));
  const auto context = m_home.context(
      {{GetParam().variable, other},
       {QStringLiteral("MORVO_CODEX_CONFIG_PATH"), m_home.path(QStringLiteral("other/c.toml"))}});
  const auto agent = connector(GetParam().id, context);
  EXPECT_EQ(agent->file(), other);
  ASSERT_TRUE(agent->connect().has_value());
  EXPECT_TRUE(agent->isConnected());
  EXPECT_EQ(m_home.get(file()), "<none>");
  EXPECT_EQ(m_home.get(QStringLiteral(".codex/config.toml")), "<none>");
}

TEST_P(AgentConnectorTest, AnEmptyVariableCountsAsUnset) {
  EXPECT_EQ(connector(GetParam().id, m_home.context({{GetParam().variable, QString()}}))->file(),
            m_home.path(file()));
}

TEST_P(AgentConnectorTest, ConnectedIsDecidedByTheStopEventsAlone) {
  connect();
  Json settings = m_home.json(file());
  for (const char *event : {"Stop", "stop", "AfterModel"}) {
    settings["hooks"].erase(event);
  }
  m_home.put(file(), QByteArray::fromStdString(settings.dump()));
  EXPECT_FALSE(make()->isConnected());
  EXPECT_TRUE(make()->obstacles().join(u' ').contains(QStringLiteral("缺少这些事件的钩子：")));
}

TEST_P(AgentConnectorTest, NamesTheEventsWithoutOurEntry) {
  connect();
  Json settings = m_home.json(file());
  settings["hooks"].erase(GetParam().events.last().toStdString());
  m_home.put(file(), QByteArray::fromStdString(settings.dump()));
  EXPECT_TRUE(make()->isConnected());
  EXPECT_TRUE(make()->obstacles().join(u' ').contains(
      QStringLiteral("缺少这些事件的钩子：") + GetParam().events.last() + QStringLiteral("，")));
}

TEST_P(AgentConnectorTest, TellsWhatIsWrongWithTheScript) {
  connect();
  const auto told = [&] { return make()->obstacles().join(u'\n'); };
  const QString script = m_home.path(QStringLiteral(".morvo/hook.sh"));
  ASSERT_EQ(::chmod(QFile::encodeName(script).constData(), 0644), 0);
  EXPECT_TRUE(told().contains(QStringLiteral("没有执行权限")));
  m_home.put(QStringLiteral(".morvo/hook.sh"), "#!/bin/sh\n");
  ASSERT_EQ(::chmod(QFile::encodeName(script).constData(), 0755), 0);
  EXPECT_TRUE(told().contains(QStringLiteral("和当前版本不一致")));
  ASSERT_TRUE(QFile::remove(script));
  EXPECT_TRUE(told().contains(QStringLiteral("缺少钩子脚本")));
}

TEST_P(AgentConnectorTest, TellsThatAShellWouldSplitTheCommand) {
  connect();
  EXPECT_TRUE(make()->obstacles().join(u' ').contains(QStringLiteral("拆开")));
  HookHome plain(QStringLiteral("plain"));
  const auto agent = connector(GetParam().id, plain.context());
  ASSERT_TRUE(agent->connect().has_value());
  // Codex keeps its reminder of the trust.
  EXPECT_EQ(agent->obstacles().size(), GetParam().id == QStringLiteral("codex") ? 1 : 0);
}

TEST_P(AgentConnectorTest, TellsThatTheInterpreterIsMissingEvenBeforeConnecting) {
  auto context = m_home.context();
  context.python = QStringLiteral("/nonexistent/python3");
  EXPECT_EQ(connector(GetParam().id, context)->obstacles(),
            QStringList{QStringLiteral("没有可执行的 /nonexistent/python3，钩子脚本跑不起来")});
}

TEST_P(AgentConnectorTest, AnAgentThatIsNotConnectedHasNoObstacles) {
  EXPECT_EQ(make()->obstacles(), QStringList());
}

TEST_P(AgentConnectorTest, WhenTheScriptCannotBeInstalledNothingElseChanges) {
  m_home.put(file(), "{\"a\": 1}");
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(QStringLiteral(".morvo/hook.sh/x")));
  const auto outcome = make()->connect();
  ASSERT_FALSE(outcome.has_value());
  EXPECT_EQ(outcome.error().kind, HookError::Kind::scriptNotWritten);
  EXPECT_EQ(m_home.get(file()), "{\"a\": 1}");
  EXPECT_EQ(m_home.get(QStringLiteral(".codex/config.toml")), "<none>");
}

TEST_P(AgentConnectorTest, TellsOfAnInboxThatNoHookCanWriteInto) {
  connect();
  const QString inbox = m_home.path(QStringLiteral(".morvo/inbox.jsonl"));
  const auto told = [&] { return make()->obstacles().join(u'\n'); };
  EXPECT_FALSE(told().contains(inbox));
  ASSERT_TRUE(QFile::remove(inbox));
  EXPECT_FALSE(told().contains(inbox)) << "the script creates a missing one";
  ASSERT_EQ(::mkfifo(QFile::encodeName(inbox).constData(), 0600), 0);
  EXPECT_TRUE(told().contains(inbox + QStringLiteral(" 不是普通文件")));
  ASSERT_TRUE(QFile::remove(inbox));
  // Not even a privileged user may write into a running program.
  ASSERT_TRUE(QFile::link(QStringLiteral("/proc/self/exe"), inbox));
  EXPECT_TRUE(told().contains(inbox + QStringLiteral(" 不可写")));
}

TEST_P(AgentConnectorTest, TellsThatEventsOfAnotherHomeLandElsewhere) {
  connect();
  const auto told = [&](const QString &home) {
    return connector(GetParam().id, m_home.context({{QStringLiteral("HOME"), home}}))
        ->obstacles()
        .join(u'\n');
  };
  const QString word = QStringLiteral("这里的 HOME 是");
  EXPECT_TRUE(told(QStringLiteral("/somewhere/else")).contains(word));
  EXPECT_FALSE(told(m_home.home().path).contains(word));
  EXPECT_FALSE(told(m_home.home().path + u'/').contains(word));
  EXPECT_FALSE(told(QString()).contains(word));
  ASSERT_TRUE(QFile::link(m_home.home().path, m_home.path(QStringLiteral("same"))));
  EXPECT_FALSE(told(m_home.path(QStringLiteral("same"))).contains(word));
}

TEST_P(AgentConnectorTest, CommentsAreNoReasonToLoseSettings) {
  m_home.put(file(), "{ // mine\n  \"model\": \"o\" /* , */ }\n");
  EXPECT_TRUE(make()->obstacles().join(u' ').contains(QStringLiteral("里有注释")));
  connect();
  EXPECT_EQ(m_home.json(file())["model"], "o");
  EXPECT_FALSE(make()->obstacles().join(u' ').contains(QStringLiteral("里有注释")));
}

TEST_P(AgentConnectorTest, TheLockIsForTheUserAlone) {
  connect();
  EXPECT_EQ(m_home.mode(QStringLiteral(".morvo/.lock")), 0600U);
}

/// Everyone changes the file at the same time, as processes do: each with a lock of its own.
TEST(AgentConnectorsTest, ChangesMadeAtOnceAllSurvive) {
  for (int round = 0; round < 20; ++round) {
    HookHome home;
    std::barrier start(2);
    std::atomic<int> done = 0;
    {
      const std::jthread events([&] {
        SystemFileLayer files;
        HookContext context{.home = home.home(), .environment = {}, .files = &files};
        start.arrive_and_wait();
        done += ClaudeConnector(context).connect().has_value() ? 1 : 0;
      });
      const std::jthread approvals([&] {
        SystemFileLayer files;
        HookContext context{.home = home.home(), .environment = {}, .files = &files};
        start.arrive_and_wait();
        done += ActConnector(context).setConnected(true).has_value() ? 1 : 0;
      });
    }
    ASSERT_EQ(done, 2);
    const Json settings = home.json(QStringLiteral(".claude/settings.json"));
    EXPECT_TRUE(ClaudeConnector(home.context()).isConnected()) << settings.dump();
    EXPECT_TRUE(settings["hooks"].contains("PreToolUse")) << settings.dump();
  }
}

TEST(AgentConnectorsTest, AreFourInTheOrderTheyAreShown) {
  HookHome home;
  QStringList ids;
  for (const auto &agent : AgentConnectors::all(home.context())) {
    ids << agent->id();
  }
  EXPECT_EQ(ids.join(u' '), QStringLiteral("claude codex gemini cursor"));
}

TEST(ClaudeConnectorTest, KnowsItsOwnCommandInGroups) {
  HookHome home;
  const ClaudeConnector claude(home.context());
  const auto settings = claude.withHooksAdded(Json::object());
  EXPECT_TRUE(claude.groupsContainOurCommand(settings["hooks"]["SubagentStop"]));
  EXPECT_FALSE(claude.groupsContainOurCommand(Json::array()));
}

TEST(ClaudeConnectorTest, TellsWhatKeepsTheApprovalsFromRunning) {
  HookHome home(QStringLiteral("home"));
  ActConnector act(home.context());
  ASSERT_TRUE(act.setConnected(true).has_value());
  const auto told = [&] { return ClaudeConnector(home.context()).obstacles().join(u'\n'); };
  EXPECT_FALSE(told().contains(QStringLiteral("perm.sh"))) << told().toStdString();
  home.put(QStringLiteral(".morvo/perm.sh"), "#!/bin/sh\n");
  EXPECT_TRUE(told().contains(QStringLiteral("perm.sh 和当前版本不一致"))) << told().toStdString();
  ASSERT_TRUE(QFile::remove(home.path(QStringLiteral(".morvo/perm.sh"))));
  EXPECT_TRUE(told().contains(QStringLiteral("perm.sh，请重新连接"))) << told().toStdString();
  ASSERT_TRUE(act.setConnected(false).has_value());
  EXPECT_FALSE(told().contains(QStringLiteral("perm.sh"))) << told().toStdString();
}

TEST(ClaudeConnectorTest, TellsThatAHomeWithABlankRunsNoApproval) {
  HookHome home(QStringLiteral("my home"));
  ASSERT_TRUE(ActConnector(home.context()).setConnected(true).has_value());
  EXPECT_TRUE(ClaudeConnector(home.context())
                  .obstacles()
                  .join(u'\n')
                  .contains(QStringLiteral("perm.sh 含有空格")));
}

TEST(ClaudeConnectorTest, TellsThatAllHooksAreOff) {
  HookHome home;
  const ClaudeConnector claude(home.context());
  const auto isTold = [&](const char *value) {
    home.put(QStringLiteral(".claude/settings.json"),
             QByteArray("{\"disableAllHooks\": ") + value + "}");
    return claude.obstacles().join(u' ').contains(QStringLiteral("disableAllHooks"));
  };
  EXPECT_TRUE(isTold("true"));
  EXPECT_FALSE(isTold("false"));
  EXPECT_FALSE(isTold("\"true\""));
}

class CodexConnectorTest : public testing::Test {
protected:
  const QString m_config = QStringLiteral(".codex/config.toml");
  const QString m_hooks = QStringLiteral(".codex/hooks.json");
  HookHome m_home;
  CodexConnector m_codex{m_home.context()};
};

TEST_F(CodexConnectorTest, ConnectingTurnsTheFeatureOnAndDisconnectingLeavesIt) {
  m_home.put(m_config, "model = \"o\"\n[features]\nhooks = false # no\n");
  ASSERT_TRUE(m_codex.connect().has_value());
  EXPECT_EQ(m_home.get(m_config), "model = \"o\"\n[features]\nhooks = true\n");
  ASSERT_TRUE(m_codex.disconnect().has_value());
  EXPECT_EQ(m_home.get(m_config), "model = \"o\"\n[features]\nhooks = true\n");
}

TEST_F(CodexConnectorTest, WithTheFeatureOnButTheEntriesGoneItIsNotConnected) {
  ASSERT_TRUE(m_codex.connect().has_value());
  m_home.put(m_hooks, "{}");
  EXPECT_FALSE(m_codex.isConnected());
}

TEST_F(CodexConnectorTest, WithTheEntriesThereButTheFeatureOffItIsNotConnectedAndSaysWhy) {
  ASSERT_TRUE(m_codex.connect().has_value());
  m_home.put(m_config, "[features]\nhooks = false\n");
  EXPECT_FALSE(m_codex.isConnected());
  EXPECT_TRUE(m_codex.obstacles().join(u' ').contains(QStringLiteral("没有 hooks = true")));
}

TEST_F(CodexConnectorTest, TellsKeysThatCodexRefuses) {
  m_home.put(m_hooks, R"({"mine": 1, "version": 2})");
  EXPECT_TRUE(
      m_codex.obstacles().join(u' ').contains(QStringLiteral("不认识的键：mine、version，")));
  m_home.put(m_hooks, R"({"hooks": {}})");
  EXPECT_EQ(m_codex.obstacles(), QStringList());
}

TEST_F(CodexConnectorTest, TellsAConfigurationThatIsNoToml) {
  m_home.put(m_config, "= broken");
  EXPECT_TRUE(m_codex.obstacles().join(u' ').contains(QStringLiteral("不是看得懂的 TOML")));
}

TEST_F(CodexConnectorTest, TellsASwitchThatOnlyLooksOn) {
  ASSERT_TRUE(m_codex.connect().has_value());
  m_home.put(m_config, "text = \"\"\"\n[features]\nhooks = true\n\"\"\"\n");
  EXPECT_TRUE(m_codex.isConnected()) << "by the line alone";
  EXPECT_TRUE(m_codex.obstacles().join(u' ').contains(QStringLiteral("按 TOML 不算")));
}

TEST_F(CodexConnectorTest, RemindsOfTheTrustThatCodexAsksFor) {
  ASSERT_TRUE(m_codex.connect().has_value());
  EXPECT_TRUE(m_codex.obstacles().join(u' ').contains(QStringLiteral("Hooks need review")));
}

TEST_F(CodexConnectorTest, AConfigurationThatWouldBreakStaysAndSoDoTheHooks) {
  m_home.put(m_config, "features = { web = true }\n");
  m_home.put(m_hooks, "{\"hooks\": {}}");
  const auto outcome = m_codex.connect();
  ASSERT_FALSE(outcome.has_value());
  EXPECT_EQ(outcome.error().kind, HookError::Kind::configConflict);
  EXPECT_TRUE(outcome.error().message().contains(QStringLiteral("hooks = true")));
  EXPECT_EQ(m_home.get(m_config), "features = { web = true }\n");
  EXPECT_EQ(m_home.get(m_hooks), "{\"hooks\": {}}");
}

TEST_F(CodexConnectorTest, AnUnreadableConfigurationStopsTheConnect) {
  ASSERT_TRUE(QDir(m_home.home().path).mkpath(m_config));
  const auto outcome = m_codex.connect();
  ASSERT_FALSE(outcome.has_value());
  EXPECT_EQ(outcome.error().kind, HookError::Kind::fileUnreadable);
  EXPECT_EQ(m_home.get(m_hooks), "<none>");
  EXPECT_FALSE(m_codex.isConnected());
}

TEST_F(CodexConnectorTest, AnUnchangedConfigurationIsWrittenToo) {
  m_home.put(m_config, "[features]\nhooks = true\n");
  const auto inode = [&] {
    struct stat info{};
    EXPECT_EQ(::stat(QFile::encodeName(m_codex.configURL()).constData(), &info), 0);
    return info.st_ino;
  };
  const auto before = inode();
  ASSERT_TRUE(m_codex.enableHooksFeature().has_value());
  EXPECT_NE(inode(), before);
  EXPECT_EQ(m_home.get(m_config), "[features]\nhooks = true\n");
}

} // namespace
} // namespace morvo
