#include "hooks/HookHome.h"
#include "hooks/ScriptRun.h"
#include "monitor/HookScript.h"
#include "platform/MorvoHome.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <vector>

namespace morvo {
namespace {

using test::HookHome;
using test::ScriptRun;

const QString inbox = QStringLiteral(".morvo/inbox.jsonl");

class EventScriptTest : public testing::Test {
protected:
  void SetUp() override {
    const auto installed = HookScript::install(m_program.context());
    ASSERT_TRUE(installed.has_value());
    m_script = *installed;
  }

  /// Runs the script for the agent's home and expects a silent success.
  void forward(const QByteArray &input, ScriptRun::Options options = {}) {
    if (options.home.isNull()) {
      options.home = m_agent.home().path;
    }
    ScriptRun run(m_script, input, options);
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.exitCode(), 0) << run.err().toStdString();
    EXPECT_EQ(run.out(), "");
    EXPECT_EQ(run.err(), "");
  }

  /// The lines that arrived, without empty ones: who sees the middle of another one's write takes
  /// it for a torn line and ends it.
  QList<QByteArray> arrivedLines() {
    QList<QByteArray> lines = m_agent.get(inbox).split('\n');
    EXPECT_EQ(lines.last(), "");
    lines.removeAll(QByteArray());
    return lines;
  }

  /// The single line that arrived, as JSON.
  nlohmann::json line() {
    const QByteArray text = m_agent.get(inbox);
    EXPECT_EQ(text.count('\n'), 1) << text.left(300).toStdString();
    EXPECT_TRUE(text.endsWith('\n'));
    return m_agent.json(inbox);
  }

  HookHome m_program;
  HookHome m_agent{QStringLiteral("agent 的家")};
  QString m_script;
};

TEST_F(EventScriptTest, InstallsBothScriptsExecutableForEveryone) {
  EXPECT_EQ(m_program.mode(QStringLiteral(".morvo/hook.sh")), 0755U);
  EXPECT_EQ(m_program.mode(QStringLiteral(".morvo/perm.sh")), 0755U);
  EXPECT_EQ(m_program.mode(QStringLiteral(".morvo")), 0700U);
  EXPECT_TRUE(HookScript::alreadyInstalled(m_program.home()));
  EXPECT_FALSE(HookScript::alreadyInstalled(m_agent.home()));
}

TEST_F(EventScriptTest, InstallingAgainReplacesAnOldScriptAndItsMode) {
  m_program.put(QStringLiteral(".morvo/hook.sh"), "old");
  ASSERT_TRUE(QFile::setPermissions(m_script, QFile::ReadOwner));
  ASSERT_TRUE(HookScript::install(m_program.context()).has_value());
  EXPECT_EQ(m_program.get(QStringLiteral(".morvo/hook.sh")), HookScript::eventScript());
  EXPECT_EQ(m_program.mode(QStringLiteral(".morvo/hook.sh")), 0755U);
}

TEST_F(EventScriptTest, TheSecondLineSaysWhatTheScriptIsFor) {
  EXPECT_EQ(QString::fromUtf8(HookScript::eventScript().split('\n')[1]),
            QStringLiteral("# Morvo: 把 coding agent hook 的 stdin JSON 压成一行追加到 "
                           "inbox，供 Morvo 消费。"));
}

TEST_F(EventScriptTest, TheInlineProgramsArePlainAsciiWhateverTheLocale) {
  for (const QByteArray &script : {HookScript::eventScript(), HookScript::permissionScript()}) {
    const QList<QByteArray> parts = script.split('\'');
    // Shell, program, shell: a further quote would end the program early.
    ASSERT_EQ(parts.size(), 3);
    EXPECT_TRUE(std::ranges::all_of(parts[1], [](char c) { return c > 0; }));
  }
}

TEST_F(EventScriptTest, AppendsTheEventWithItsSource) {
  forward(R"({"hook_event_name": "Stop", "extra": [1, {"a": null}]})",
          {.arguments = {QStringLiteral("claude")}});
  EXPECT_EQ(line(), nlohmann::json::parse(
                        R"({"hook_event_name":"Stop","extra":[1,{"a":null}],"_src":"claude"})"));
}

TEST_F(EventScriptTest, TheAgentsHomeDecidesWhereTheLineGoes) {
  forward("{}");
  EXPECT_EQ(m_program.get(inbox), "");
  EXPECT_EQ(m_agent.get(inbox), "{\"_src\": \"unknown\"}\n");
}

TEST_F(EventScriptTest, CreatesTheFolderForTheUserAlone) {
  forward("{}");
  EXPECT_EQ(m_agent.mode(QStringLiteral(".morvo")), 0700U);
  EXPECT_EQ(m_agent.mode(inbox), 0600U);
}

TEST_F(EventScriptTest, WithoutAnArgumentTheSourceIsUnknown) {
  forward(R"({"event":"stop"})");
  EXPECT_EQ(line()["_src"], "unknown");
}

TEST_F(EventScriptTest, ASourceInTheInputIsReplaced) {
  forward(R"({"_src":"forged"})", {.arguments = {QStringLiteral("codex")}});
  EXPECT_EQ(line()["_src"], "codex");
}

class NoEventTest : public EventScriptTest, public testing::WithParamInterface<QByteArray> {};

TEST_P(NoEventTest, InputThatIsNoObjectIsDroppedSilently) {
  forward(GetParam());
  EXPECT_EQ(m_agent.get(inbox), "<none>");
}

INSTANTIATE_TEST_SUITE_P(Inputs, NoEventTest,
                         testing::Values(QByteArray(), QByteArray("not json"), QByteArray("{"),
                                         QByteArray("[1, 2]"), QByteArray("null"), QByteArray("7"),
                                         QByteArray("\"text\""), QByteArray("\xFF\xFE"),
                                         QByteArray(200000, '['), QByteArray("{} {}")));

struct Hostile {
  QByteArray input;
  std::string message;
};

class HostileTextTest : public EventScriptTest, public testing::WithParamInterface<Hostile> {};

TEST_P(HostileTextTest, ArrivesAsOneLineOfJson) {
  forward(GetParam().input, {.arguments = {QStringLiteral("claude")}});
  EXPECT_EQ(line()["message"], GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, HostileTextTest,
    testing::Values(Hostile{R"({"message":"$(rm -rf ~) `id` ' \" \\ ; | & > x"})",
                            "$(rm -rf ~) `id` ' \" \\ ; | & > x"},
                    Hostile{R"({"message":"a\nb\r\u0000\u2028c"})",
                            std::string("a\nb\r\0\xE2\x80\xA8"
                                        "c",
                                        9)},
                    Hostile{R"({"message":"half \ud83d emoji"})", "half ? emoji"},
                    Hostile{"{\"message\":\"caf\xE9\"}", "caf\xEF\xBF\xBD"},
                    Hostile{"\xEF\xBB\xBF{\"message\":\"marked\"}", "marked"},
                    Hostile{"{\n  \"message\":\n  \"多行 🦑\"\n}\n", "多行 🦑"},
                    Hostile{R"({"message":"n","big":1e400,"nan":NaN,"inf":-Infinity})", "n"}));

TEST_F(EventScriptTest, WritesUtf8InTheCLocale) {
  forward(R"({"message":"\u4f60好 🦑"})",
          {.variables = {QStringLiteral("LC_ALL=C"), QStringLiteral("LANG=C"),
                         QStringLiteral("PYTHONUTF8=0"), QStringLiteral("PYTHONCOERCECLOCALE=0")}});
  EXPECT_EQ(m_agent.get(inbox), "{\"message\": \"你好 🦑\", \"_src\": \"unknown\"}\n");
}

TEST_F(EventScriptTest, AMillionBytesArriveWhole) {
  const std::string text(1'000'000, 'x');
  forward(QByteArray::fromStdString(nlohmann::json{{"message", text}}.dump()));
  EXPECT_EQ(line()["message"], text);
}

TEST_F(EventScriptTest, FiftyWritersAtOnceDoNotMix) {
  constexpr int writers = 50;
  // Far beyond a buffered writer's block, so that lines written in pieces would interleave.
  const std::string filler(200'000, 'y');
  std::vector<std::unique_ptr<ScriptRun>> runs;
  for (int i = 0; i < writers; ++i) {
    const nlohmann::json event = {{"n", i}, {"filler", filler}};
    runs.push_back(std::make_unique<ScriptRun>(
        m_script, QByteArray::fromStdString(event.dump()),
        ScriptRun::Options{.home = m_agent.home().path, .holdsInput = true}));
  }
  // Every writer has read its event and waits for its end.
  EXPECT_EQ(m_agent.get(inbox), "<none>");
  for (const auto &run : runs) {
    run->endInput();
  }
  for (const auto &run : runs) {
    ASSERT_TRUE(run->finish());
    EXPECT_EQ(run->exitCode(), 0);
  }
  QSet<int> seen;
  const QList<QByteArray> lines = arrivedLines();
  for (const QByteArray &text : lines) {
    const auto event = nlohmann::json::parse(text.toStdString(), nullptr, false);
    ASSERT_TRUE(event.is_object());
    EXPECT_EQ(event["filler"], filler);
    seen.insert(event["n"].get<int>());
  }
  EXPECT_EQ(lines.size(), writers);
  EXPECT_EQ(seen.size(), writers);
}

TEST_F(EventScriptTest, HundredsOfEventsOfManyWritersAllArriveOnce) {
  constexpr int writers = 16;
  constexpr int eventsEach = 20;
  m_agent.put(QStringLiteral("writer.sh"), R"(n=0
while [ $n -lt $3 ]; do
  printf '{"writer": %d, "n": %d}' $2 $n | sh "$1" claude || exit 1
  n=$((n + 1))
done
)");
  std::vector<std::unique_ptr<ScriptRun>> runs;
  for (int i = 0; i < writers; ++i) {
    runs.push_back(std::make_unique<ScriptRun>(
        m_agent.path(QStringLiteral("writer.sh")), QByteArray(),
        ScriptRun::Options{.arguments = {m_script, QString::number(i), QString::number(eventsEach)},
                           .home = m_agent.home().path}));
  }
  for (const auto &run : runs) {
    ASSERT_TRUE(run->finish());
    EXPECT_EQ(run->exitCode(), 0) << run->err().toStdString();
  }
  QList<int> next(writers, 0);
  const QList<QByteArray> lines = arrivedLines();
  ASSERT_EQ(lines.size(), writers * eventsEach);
  for (const QByteArray &text : lines) {
    const auto event = nlohmann::json::parse(text.toStdString(), nullptr, false);
    ASSERT_TRUE(event.is_object()) << text.toStdString();
    EXPECT_EQ(event["n"], next[event["writer"].get<int>()]++) << "each writer's events in order";
  }
}

TEST_F(EventScriptTest, ATornLineDoesNotSwallowTheNextOne) {
  m_agent.put(inbox, "{\"whole\": 1}\n{\"to");
  forward("{}");
  EXPECT_EQ(m_agent.get(inbox), "{\"whole\": 1}\n{\"to\n{\"_src\": \"unknown\"}\n");
  forward("{}");
  EXPECT_EQ(m_agent.get(inbox).count('\n'), 4);
}

TEST_F(EventScriptTest, AHugeIntegerDoesNotLoseTheEvent) {
  forward(R"({"event":"Stop","big":)" + QByteArray(5000, '9') + R"(,"small":-12})");
  EXPECT_EQ(line(),
            nlohmann::json::parse(R"({"event":"Stop","big":null,"small":-12,"_src":"unknown"})"));
}

TEST_F(EventScriptTest, APipeInTheInboxsPlaceIsAnErrorAndNotWaitedFor) {
  ASSERT_TRUE(QDir(m_agent.home().path).mkpath(QStringLiteral(".morvo")));
  ASSERT_EQ(::mkfifo(QFile::encodeName(m_agent.path(inbox)).constData(), 0600), 0);
  ScriptRun run(m_script, "{}", {.home = m_agent.home().path});
  ASSERT_TRUE(run.finish());
  EXPECT_EQ(run.exitCode(), 1);
  EXPECT_EQ(run.out(), "");
  EXPECT_EQ(run.err().count('\n'), 1);
}

TEST_F(EventScriptTest, AnEmptyOrRelativeHomeCountsAsMissing) {
  for (const QString &home : {QStringLiteral(""), QStringLiteral("relative")}) {
    ScriptRun run(m_script, "{}", {.home = home, .workingDirectory = m_agent.home().path});
    ASSERT_TRUE(run.finish());
    EXPECT_EQ(run.exitCode(), 1);
    EXPECT_EQ(
        QDir(m_agent.home().path).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList());
  }
}

TEST_F(EventScriptTest, ModulesInTheProjectFolderAreNotRun) {
  m_agent.put(QStringLiteral("project/json.py"), "open('ran', 'w')\n");
  forward("{}", {.variables = {QStringLiteral("PYTHONPATH=.")},
                 .workingDirectory = m_agent.path(QStringLiteral("project"))});
  EXPECT_EQ(m_agent.get(QStringLiteral("project/ran")), "<none>");
  EXPECT_EQ(line()["_src"], "unknown");
}

TEST_F(EventScriptTest, AnInboxThatCannotBeWrittenIsAnErrorInOneLine) {
  ASSERT_TRUE(QDir(m_agent.home().path).mkpath(inbox));
  ScriptRun run(m_script, "{}", {.home = m_agent.home().path});
  ASSERT_TRUE(run.finish());
  // Agents take 2 as "block the turn"; a lost event must not do that.
  EXPECT_EQ(run.exitCode(), 1);
  EXPECT_EQ(run.out(), "");
  EXPECT_TRUE(run.err().startsWith("morvo: "));
  EXPECT_EQ(run.err().count('\n'), 1);
}

TEST_F(EventScriptTest, WithoutAHomeNothingIsWrittenAnywhere) {
  ScriptRun run(m_script, "{}", {.workingDirectory = m_agent.home().path});
  ASSERT_TRUE(run.finish());
  EXPECT_EQ(run.exitCode(), 1);
  EXPECT_EQ(m_agent.get(inbox), "<none>");
}

} // namespace
} // namespace morvo
