#include "hooks/HookHome.h"
#include "hooks/ScriptRun.h"
#include "monitor/ActConnector.h"
#include "monitor/HookScript.h"
#include "platform/MorvoHome.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvo {
namespace {

using test::HookHome;
using test::ScriptRun;

/// Looks into the inbox; is woken when a line has been written.
class WatchedInbox {
public:
  explicit WatchedInbox(const HomeFolder &home) : m_path(MorvoHome::inbox(home)) {
    MorvoHome::ensure(home);
    m_descriptor = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    EXPECT_GE(::inotify_add_watch(m_descriptor, QFile::encodeName(m_path).constData(), IN_MODIFY),
              0);
  }
  WatchedInbox(const WatchedInbox &) = delete;
  WatchedInbox &operator=(const WatchedInbox &) = delete;
  ~WatchedInbox() { ::close(m_descriptor); }

  /// The next line; empty when none comes.
  QByteArray nextLine() {
    for (;;) {
      const QByteArray unread = rest();
      if (const qsizetype end = unread.indexOf('\n') + 1; end > 0) {
        m_read += end;
        return unread.first(end);
      }
      pollfd waiting{.fd = m_descriptor, .events = POLLIN, .revents = 0};
      if (::poll(&waiting, 1, 60000) <= 0) {
        return {};
      }
      QByteArray events(65536, Qt::Uninitialized);
      EXPECT_GT(::read(m_descriptor, events.data(), static_cast<std::size_t>(events.size())), 0);
    }
  }
  nlohmann::json nextRequest() {
    return nlohmann::json::parse(nextLine().toStdString(), nullptr, false);
  }
  [[nodiscard]] bool isEmpty() const { return rest().isEmpty(); }

private:
  [[nodiscard]] QByteArray rest() const {
    QFile file(m_path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().sliced(m_read);
  }

  QString m_path;
  int m_descriptor = -1;
  qsizetype m_read = 0;
};

QString idOf(const nlohmann::json &request) {
  return QString::fromStdString(request.value("id", ""));
}

class PermissionScriptTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(HookScript::install(m_home.context()).has_value()); }

  ScriptRun ask(const QByteArray &input) { return ask(script(), input); }
  ScriptRun ask(const QString &script, const QByteArray &input) {
    return ScriptRun(script, input,
                     {.arguments = {QStringLiteral("claude")},
                      .home = m_home.home().path,
                      .variables = {QStringLiteral("LC_ALL=C")}});
  }
  [[nodiscard]] QString script() const { return MorvoHome::permissionScript(m_home.home()); }
  /// The script with one place of its program changed.
  QString changedScript(const QByteArray &before, const QByteArray &after) {
    QByteArray text = HookScript::permissionScript();
    EXPECT_EQ(text.count(before), 1);
    m_home.put(QStringLiteral("changed.sh"), text.replace(before, after));
    return m_home.path(QStringLiteral("changed.sh"));
  }
  void decide(const QString &id, bool allow) { ActConnector(m_home.context()).decide(id, allow); }
  [[nodiscard]] static QString decisionFile(const QString &id) {
    return QStringLiteral(".morvo/decisions/%1.json").arg(id);
  }
  /// Expects the agent's form of an answer and nothing else.
  static void expectAnswer(ScriptRun &run, const std::string &decision, const std::string &reason) {
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.exitCode(), 0);
    EXPECT_EQ(run.err(), "");
    EXPECT_EQ(run.out().count('\n'), 1);
    const nlohmann::json expected = {{"hookSpecificOutput",
                                      {{"hookEventName", "PreToolUse"},
                                       {"permissionDecision", decision},
                                       {"permissionDecisionReason", reason}}}};
    EXPECT_EQ(nlohmann::json::parse(run.out().toStdString(), nullptr, false), expected);
  }
  static void expectSilence(ScriptRun &run) {
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.exitCode(), 0);
    EXPECT_EQ(run.out(), "");
    EXPECT_EQ(run.err(), "");
  }

  HookHome m_home;
  WatchedInbox m_inbox{m_home.home()};
};

TEST_F(PermissionScriptTest, AnAllowedCallIsAnsweredAndTheDecisionConsumed) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"make 测试"}})");
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request, (nlohmann::json{{"kind", "perm"},
                                     {"id", request.value("id", "")},
                                     {"tool", "Bash"},
                                     {"summary", "make 测试"}}));
  EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f]{12}$")).match(idOf(request)).hasMatch());
  EXPECT_TRUE(run.isRunning());
  decide(idOf(request), true);
  expectAnswer(run, "allow", "你批准了");
  EXPECT_EQ(m_home.get(decisionFile(idOf(request))), "<none>");
}

TEST_F(PermissionScriptTest, ADeniedCallIsAnswered) {
  auto run = ask(R"({"tool_name":"Write","tool_input":{"file_path":"/a/b","content":"c"}})");
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["summary"], "/a/b");
  decide(idOf(request), false);
  expectAnswer(run, "deny", "你拒绝了");
}

class BadDecisionTest : public PermissionScriptTest,
                        public testing::WithParamInterface<QByteArray> {};

TEST_P(BadDecisionTest, LeavesTheCallToTheAgent) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  m_home.put(decisionFile(id), GetParam());
  expectSilence(run);
  EXPECT_EQ(m_home.get(decisionFile(id)), "<none>");
}

INSTANTIATE_TEST_SUITE_P(Files, BadDecisionTest,
                         testing::Values(QByteArray("{\"decision\":\"al"), QByteArray("[]"),
                                         QByteArray("{}"), QByteArray("{\"decision\":\"maybe\"}"),
                                         QByteArray("{\"decision\":{\"allow\":1}}"),
                                         QByteArray("\xFF")));

class ReadOnlyToolTest : public PermissionScriptTest,
                         public testing::WithParamInterface<const char *> {};

TEST_P(ReadOnlyToolTest, IsAllowedAtOnceWithoutALine) {
  auto run = ask(QByteArray(R"({"tool_name":")") + GetParam() + R"(","tool_input":{}})");
  expectAnswer(run, "allow", "只读，自动放行");
  EXPECT_TRUE(m_inbox.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Tools, ReadOnlyToolTest,
                         testing::Values("Read", "Grep", "Glob", "LS", "NotebookRead", "WebFetch",
                                         "WebSearch", "TodoWrite"));

class NoRequestTest : public PermissionScriptTest,
                      public testing::WithParamInterface<const char *> {};

TEST_P(NoRequestTest, InputThatIsNoRequestEndsSilently) {
  auto run = ask(GetParam());
  expectSilence(run);
  EXPECT_TRUE(m_inbox.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Inputs, NoRequestTest,
                         testing::Values("", "nonsense", "[1]", "\"text\"", "null"));

struct Summary {
  QByteArray input;
  std::string expected;
};

class SummaryTest : public PermissionScriptTest, public testing::WithParamInterface<Summary> {};

TEST_P(SummaryTest, TellsWhatTheToolIsAboutToDo) {
  auto run = ask(QByteArray(R"({"tool_name":"Bash","tool_input":)") + GetParam().input + '}');
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["summary"], GetParam().expected);
  decide(idOf(request), true);
  expectAnswer(run, "allow", "你批准了");
}

std::string repeated(const std::string &text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, SummaryTest,
    testing::Values(
        Summary{QByteArray::fromStdString(R"({"command":")" + repeated("长", 250) + R"("})"),
                repeated("长", 200)},
        Summary{QByteArray::fromStdString(R"({"other":")" + repeated("x", 300) + R"("})"),
                R"({"other": ")" + repeated("x", 129)},
        Summary{R"({"command":"","file_path":"/f"})", "/f"}, Summary{"{}", "{}"},
        Summary{"null", "{}"}, Summary{R"({"command":["a","b"]})", "['a', 'b']"},
        Summary{R"({"command":"a\nb \"$(x)\" '; \ud83d"})", "a\nb \"$(x)\" '; ?"},
        Summary{"[1, 2]", "[1, 2]"}));

TEST_F(PermissionScriptTest, WithoutAToolNameTheToolIsEmpty) {
  auto run = ask("{}");
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["tool"], "");
  decide(idOf(request), false);
  expectAnswer(run, "deny", "你拒绝了");
}

TEST_F(PermissionScriptTest, OfTwoRequestsAClickAnswersOnlyItsOwn) {
  auto first = ask(R"({"tool_name":"Bash","tool_input":{"command":"first"}})");
  const QString firstId = idOf(m_inbox.nextRequest());
  auto second = ask(R"({"tool_name":"Bash","tool_input":{"command":"second"}})");
  const QString secondId = idOf(m_inbox.nextRequest());
  EXPECT_NE(firstId, secondId);
  decide(secondId, true);
  expectAnswer(second, "allow", "你批准了");
  EXPECT_TRUE(first.isRunning());
  m_home.put(decisionFile(firstId), "{}");
  expectSilence(first);
}

TEST_F(PermissionScriptTest, GivesUpAfterAHundredAndEightyRoundsOfHalfASecond) {
  EXPECT_TRUE(HookScript::permissionScript().contains("\nPAUSE = 0.5\n"));
  // Each pause becomes a dot, so that the ninety seconds pass at once.
  auto run = ask(changedScript("time.sleep(PAUSE)", "os.write(2, b\".\")"),
                 R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  ASSERT_TRUE(run.finish());
  EXPECT_EQ(run.exitCode(), 0);
  EXPECT_EQ(run.out(), "");
  EXPECT_EQ(run.err(), QByteArray(180, '.'));
}

TEST_F(PermissionScriptTest, AClickAfterTheTimeOutStaysUnused) {
  auto run = ask(changedScript("PAUSE = 0.5", "PAUSE = 0"),
                 R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  expectSilence(run);
  decide(id, true);
  EXPECT_EQ(m_home.get(decisionFile(id)), R"({"decision":"allow"})");
}

TEST_F(PermissionScriptTest, AHugeIntegerDoesNotLoseTheRequest) {
  auto run =
      ask(R"({"tool_name":"Bash","tool_input":{"command":"x"},"n":)" + QByteArray(5000, '9') + '}');
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["summary"], "x");
  decide(idOf(request), true);
  expectAnswer(run, "allow", "你批准了");
}

TEST_F(PermissionScriptTest, AnInputOfAMegabyteIsShownByItsBeginning) {
  auto run =
      ask(R"({"tool_name":"Bash","tool_input":{"command":")" + QByteArray(1 << 20, 'x') + R"("}})");
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["summary"], std::string(200, 'x'));
  decide(idOf(request), true);
  expectAnswer(run, "allow", "你批准了");
}

TEST_F(PermissionScriptTest, AMegabyteThatIsNoCommandIsShownByItsBeginningToo) {
  auto run =
      ask(R"({"tool_name":"Edit","tool_input":{"edits":[")" + QByteArray(1 << 20, 'x') + R"("]}})");
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["summary"].get<std::string>().size(), 140U);
  decide(idOf(request), false);
  expectAnswer(run, "deny", "你拒绝了");
}

TEST_F(PermissionScriptTest, HostileTextInEveryFieldComesThroughAsItIsAndRunsNothing) {
  const std::string hostile = "'; touch owned; \"$(touch owned)`touch "
                              "owned`\\\n{\"kind\":\"perm\"}\u202E\u0001 <b>&amp;</b> %s";
  const nlohmann::json input = {{"tool_name", hostile},
                                {"tool_input", {{"command", hostile}, {hostile, hostile}}},
                                {"session_id", hostile},
                                {"cwd", hostile},
                                {hostile, hostile}};
  m_home.put(QStringLiteral("project/x"), {});
  ScriptRun run(script(), QByteArray::fromStdString(input.dump()),
                {.arguments = {QString::fromStdString("claude; touch owned")},
                 .home = m_home.home().path,
                 .workingDirectory = m_home.path(QStringLiteral("project"))});
  const auto request = m_inbox.nextRequest();
  EXPECT_EQ(request["tool"], hostile);
  EXPECT_EQ(request["summary"], hostile);
  EXPECT_TRUE(m_inbox.isEmpty());
  decide(idOf(request), true);
  expectAnswer(run, "allow", "你批准了");
  EXPECT_EQ(m_home.get(QStringLiteral("project/owned")), "<none>");
}

TEST_F(PermissionScriptTest, ModulesOfTheProjectAreNotRun) {
  for (const char *module : {"json", "os", "hashlib", "time", "sitecustomize", "encodings"}) {
    m_home.put(QStringLiteral("project/%1.py").arg(QString::fromLatin1(module)),
               "open('owned', 'w')\n");
  }
  const QString project = m_home.path(QStringLiteral("project"));
  ScriptRun run(
      script(), R"({"tool_name":"Bash","tool_input":{"command":"x"}})",
      {.arguments = {QStringLiteral("claude")},
       .home = m_home.home().path,
       .variables = {QStringLiteral("PYTHONPATH=") + project,
                     QStringLiteral("PYTHONSTARTUP=") + project + QStringLiteral("/json.py")},
       .workingDirectory = project});
  decide(idOf(m_inbox.nextRequest()), true);
  expectAnswer(run, "allow", "你批准了");
  EXPECT_EQ(m_home.get(QStringLiteral("project/owned")), "<none>");
}

TEST(PermissionCommandTest, AsClaudesSettingsHaveItItRunsInAHomeOfChineseLetters) {
  HookHome home(QStringLiteral("家目录"));
  ActConnector act(home.context());
  ASSERT_TRUE(act.setConnected(true).has_value());
  const auto settings = home.json(QStringLiteral(".claude/settings.json"));
  const auto command = settings["hooks"]["PreToolUse"][0]["hooks"][0]["command"].get<std::string>();
  WatchedInbox inbox(home.home());
  ScriptRun run(
      QStringLiteral("-c"),
      R"({"hook_event_name":"PreToolUse","tool_name":"Bash","tool_input":{"command":"x"}})",
      {.arguments = {QString::fromStdString(command)}, .home = home.home().path});
  act.decide(idOf(inbox.nextRequest()), true);
  ASSERT_TRUE(run.finish());
  EXPECT_TRUE(run.out().contains(R"("permissionDecision": "allow")"));
}

TEST(PermissionCommandTest, InAHomeWithABlankTheShellFindsNoScriptAndTheAgentAsksForItself) {
  HookHome home(QStringLiteral("my home"));
  ActConnector act(home.context());
  ASSERT_TRUE(act.setConnected(true).has_value());
  ScriptRun run(
      QStringLiteral("-c"),
      R"({"hook_event_name":"PreToolUse","tool_name":"Bash","tool_input":{"command":"x"}})",
      {.arguments = {act.command()}, .home = home.home().path});
  ASSERT_TRUE(run.finish());
  EXPECT_NE(run.exitCode(), 0);
  EXPECT_EQ(run.out(), "");
  EXPECT_EQ(home.get(QStringLiteral(".morvo/inbox.jsonl")), "");
}

TEST_F(PermissionScriptTest, ADecisionThatIsNoFileLeavesTheCallToTheAgent) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  ASSERT_TRUE(QDir(m_home.path({})).mkpath(decisionFile(id)));
  expectSilence(run);
}

TEST_F(PermissionScriptTest, APipeInADecisionsPlaceLeavesTheCallToTheAgent) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  ASSERT_TRUE(QDir(m_home.path({})).mkpath(QStringLiteral(".morvo/decisions")));
  ASSERT_EQ(::mkfifo(QFile::encodeName(m_home.path(decisionFile(id))).constData(), 0600), 0);
  expectSilence(run);
}

TEST_F(PermissionScriptTest, ALinkInADecisionsPlaceIsNoDecision) {
  m_home.put(QStringLiteral("elsewhere.json"), R"({"decision":"allow"})");
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  ASSERT_TRUE(QDir(m_home.path({})).mkpath(QStringLiteral(".morvo/decisions")));
  ASSERT_TRUE(
      QFile::link(m_home.path(QStringLiteral("elsewhere.json")), m_home.path(decisionFile(id))));
  expectSilence(run);
}

TEST_F(PermissionScriptTest, ADecisionOfMegabytesIsNone) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  const QString id = idOf(m_inbox.nextRequest());
  m_home.put(decisionFile(id), R"({"decision":"allow")" + QByteArray(8 << 20, ' ') + '}');
  expectSilence(run);
}

TEST_F(PermissionScriptTest, APipeInTheInboxsPlaceEndsTheScriptWithoutAnAnswer) {
  const QByteArray path = QFile::encodeName(MorvoHome::inbox(m_home.home()));
  ASSERT_TRUE(QFile::remove(MorvoHome::inbox(m_home.home())));
  ASSERT_EQ(::mkfifo(path.constData(), 0600), 0);
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  ASSERT_TRUE(run.finish());
  EXPECT_EQ(run.exitCode(), 1);
  EXPECT_EQ(run.out(), "");
  EXPECT_TRUE(run.err().startsWith("morvo: "));
}

TEST_F(PermissionScriptTest, TheDecisionsFolderIsTheUsersAlone) {
  auto run = ask(R"({"tool_name":"Bash","tool_input":{"command":"x"}})");
  decide(idOf(m_inbox.nextRequest()), true);
  expectAnswer(run, "allow", "你批准了");
  EXPECT_EQ(m_home.mode(QStringLiteral(".morvo/decisions")), 0700U);
}

} // namespace
} // namespace morvo
