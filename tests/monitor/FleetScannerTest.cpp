#include "monitor/FleetScanner.h"

#include "monitor/SessionHome.h"

#include <limits>

namespace morvo {
namespace {

using namespace std::chrono_literals;

const QByteArray ended =
    R"({"type":"assistant","cwd":"/home/me/沃","message":{"stop_reason":"end_turn"}})"
    "\n";

QByteArray codexLog(const QByteArray &directory) {
  return R"({"type":"session_meta","payload":{"cwd":")" + directory + "\"}}\n";
}

class FleetScannerTest : public testing::Test {
protected:
  [[nodiscard]] std::vector<FleetSession> scan() const {
    return FleetScanner::scan(m_home.home(), m_home.now());
  }
  /// The only session there is; one without a name when there is none.
  [[nodiscard]] FleetSession only() const {
    const auto found = scan();
    EXPECT_LE(found.size(), 1U);
    return found.empty() ? FleetSession() : found.front();
  }
  FleetSession claude(const QByteArray &text, std::chrono::milliseconds age = 60s) {
    m_home.putClaude(QStringLiteral("s.jsonl"), text, age);
    return only();
  }
  FleetSession codex(const QByteArray &text, std::chrono::milliseconds age = 60s) {
    m_home.putCodex(QStringLiteral("s.jsonl"), text, age);
    return only();
  }

  test::SessionHome m_home;
};

TEST_F(FleetScannerTest, AClaudeSessionIsNamedByItsFileAndItsProject) {
  EXPECT_EQ(claude(ended, 61900ms), (FleetSession{.id = QStringLiteral("s.jsonl"),
                                                  .agent = QStringLiteral("Claude"),
                                                  .project = QStringLiteral("沃"),
                                                  .status = FleetStatus::done,
                                                  .ageSec = 61}));
}

TEST_F(FleetScannerTest, ACodexSessionIsNamedByItsFileAndItsProject) {
  EXPECT_EQ(codex(codexLog("/home/me/abyss"), 31s),
            (FleetSession{.id = QStringLiteral("s.jsonl"),
                          .agent = QStringLiteral("Codex"),
                          .project = QStringLiteral("abyss"),
                          .status = FleetStatus::idle,
                          .ageSec = 31}));
}

TEST_F(FleetScannerTest, ALogYoungerThanThirtySecondsRunsWhateverItHolds) {
  EXPECT_EQ(claude(ended, 29s).status, FleetStatus::running);
  EXPECT_EQ(claude(ended, 29999ms).status, FleetStatus::running);
  EXPECT_EQ(claude(ended, 30s).status, FleetStatus::done);
}

TEST_F(FleetScannerTest, ACodexSessionRunsOrIdlesButIsNeverDone) {
  const QByteArray log = codexLog("/a/b") + ended;
  EXPECT_EQ(codex(log, 29s).status, FleetStatus::running);
  EXPECT_EQ(codex(log, 30s).status, FleetStatus::idle);
}

TEST_F(FleetScannerTest, ALogFromTheFutureRuns) {
  const auto session = claude(ended, -10s);
  EXPECT_EQ(session.status, FleetStatus::running);
  EXPECT_EQ(session.ageSec, -10);
}

TEST_F(FleetScannerTest, AnAgeBeyondAllIntegersIsCutToThem) {
  constexpr auto centuries = std::chrono::hours(24 * 365 * 100);
  EXPECT_EQ(claude(ended, -centuries).ageSec, std::numeric_limits<int>::min());
}

TEST_F(FleetScannerTest, AFileModifiedMoreThanFifteenMinutesAgoDoesNotShow) {
  EXPECT_EQ(claude(ended, 900s).ageSec, 900);
  EXPECT_EQ(claude(ended, 901s), FleetSession());
}

struct StopReason {
  const char *name;
  QByteArray message;
  FleetStatus status;
};

class FleetStopReasonTest : public FleetScannerTest,
                            public testing::WithParamInterface<StopReason> {};

TEST_P(FleetStopReasonTest, OfTheLastAssistantLineDecides) {
  EXPECT_EQ(claude(ended + R"({"type":"assistant","message":)" + GetParam().message + "}\n" +
                   R"({"type":"user","message":{"stop_reason":"end_turn"}})")
                .status,
            GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FleetStopReasonTest,
    testing::Values(StopReason{"EndTurn", R"({"stop_reason":"end_turn"})", FleetStatus::done},
                    StopReason{"ToolUse", R"({"stop_reason":"tool_use"})", FleetStatus::idle},
                    StopReason{"Null", R"({"stop_reason":null})", FleetStatus::idle},
                    StopReason{"Missing", "{}", FleetStatus::idle},
                    StopReason{"NoMessage", "\"end_turn\"", FleetStatus::idle},
                    StopReason{"NoText", R"({"stop_reason":["end_turn"]})", FleetStatus::idle}),
    [](const auto &row) { return row.param.name; });

TEST_F(FleetScannerTest, WithoutAnAssistantLineASessionIdles) {
  EXPECT_EQ(claude(R"({"type":"user","cwd":"/a/b"})").status, FleetStatus::idle);
}

TEST_F(FleetScannerTest, TheLastLineWithADirectoryNamesTheProjectOfClaude) {
  EXPECT_EQ(claude(R"({"cwd":"/a/old"})"
                   "\n"
                   R"({"cwd":"/a/new"})"
                   "\n"
                   R"({"cwd":7})"
                   "\n"
                   R"({"type":"summary"})")
                .project,
            QStringLiteral("new"));
}

TEST_F(FleetScannerTest, TheFirstSessionLineNamesTheProjectOfCodex) {
  EXPECT_EQ(codex("{\"cwd\":\"/a/no\"}\n" + codexLog("/a/first") + codexLog("/a/second")).project,
            QStringLiteral("first"));
  EXPECT_EQ(codex(R"({"type":"session\u005fmeta","payload":{"cwd":"/a/escaped"}})").project,
            QStringLiteral("escaped"));
}

TEST_F(FleetScannerTest, ACodexSessionLineWithoutADirectoryHidesTheSession) {
  EXPECT_EQ(codex("{\"type\":\"session_meta\"}\n" + codexLog("/a/second")), FleetSession());
}

struct Directory {
  const char *cwd;
  const char *project; ///< Null when the session does not show.
};

class FleetProjectTest : public FleetScannerTest, public testing::WithParamInterface<Directory> {
protected:
  static void expectProject(const FleetSession &session) {
    if (GetParam().project == nullptr) {
      EXPECT_EQ(session, FleetSession());
    } else {
      EXPECT_EQ(session.project, QString::fromUtf8(GetParam().project));
    }
  }
};

TEST_P(FleetProjectTest, IsTheLastComponentOfTheDirectory) {
  expectProject(claude(QByteArray(R"({"cwd":")") + GetParam().cwd + "\"}\n"));
}

TEST_P(FleetProjectTest, IsReadTheSameWayForCodex) {
  expectProject(codex(codexLog(GetParam().cwd)));
}

INSTANTIATE_TEST_SUITE_P(Rows, FleetProjectTest,
                         testing::Values(Directory{"/a/b", "b"}, Directory{"/a/b/", "b"},
                                         Directory{"/a/b//", "b"}, Directory{"/a", "a"},
                                         Directory{"a", "a"}, Directory{"/家 里/项 目", "项 目"},
                                         Directory{"/", nullptr}, Directory{"//", nullptr},
                                         Directory{"", nullptr}, Directory{"/a/?", nullptr}));

TEST_F(FleetScannerTest, OnlyTheLast64KiBAreRead) {
  const QByteArray filler(65536, 'x');
  EXPECT_EQ(claude(ended + filler), FleetSession());
  EXPECT_EQ(claude(filler + '\n' + ended).project, QStringLiteral("沃"));
}

TEST_F(FleetScannerTest, ALongCodexSessionLosesItsFirstLineAndDoesNotShow) {
  const QByteArray first = codexLog("/a/b");
  EXPECT_EQ(codex(first + QByteArray(65536 - first.size(), '\n')).project, QStringLiteral("b"));
  EXPECT_EQ(codex(first + QByteArray(65536 - first.size() + 1, '\n')), FleetSession());
}

TEST_F(FleetScannerTest, LinesThatAreNoObjectsAreSkipped) {
  const QByteArray noise = QByteArrayLiteral("\n\n[1]\n\"cwd\"\nnull\n{\"cwd\":\n\xFF\xFE\n") +
                           QByteArray("\0\0\n", 3) + QByteArray(2000, '[') + '\n';
  EXPECT_EQ(claude(noise + ended + noise).status, FleetStatus::done);
  m_home.putClaude(QStringLiteral("s.jsonl"), {}, 60s);
  EXPECT_EQ(codex(noise + codexLog("/a/b") + noise).project, QStringLiteral("b"));
}

TEST_F(FleetScannerTest, ALineWithoutItsEndIsReadWhenItIsWhole) {
  EXPECT_EQ(claude(ended.chopped(1)).project, QStringLiteral("沃"));
  EXPECT_EQ(claude(ended + R"({"type":"assistant","mess)").status, FleetStatus::done);
}

TEST_F(FleetScannerTest, SessionsAtWorkComeFirstThenTheYoungestAndEqualsStayInOrder) {
  m_home.putClaude(QStringLiteral("c1.jsonl"), ended, 100s);
  m_home.putClaude(QStringLiteral("c2.jsonl"), ended, 5s);
  m_home.putClaude(QStringLiteral("c3.jsonl"), ended, 40s);
  m_home.putCodex(QStringLiteral("x1.jsonl"), codexLog("/a/b"), 40s);
  m_home.putCodex(QStringLiteral("x2.jsonl"), codexLog("/a/b"), 3s);
  QStringList ids;
  for (const auto &session : scan()) {
    ids << session.id;
  }
  EXPECT_EQ(ids.join(u' '), QStringLiteral("x2.jsonl c2.jsonl c3.jsonl x1.jsonl c1.jsonl"));
}

TEST_F(FleetScannerTest, EachAgentHasItsOwnEightyFiles) {
  for (int number = 0; number < 90; ++number) {
    m_home.putClaude(QStringLiteral("c%1.jsonl").arg(number), ended, 5s);
    m_home.putCodex(QStringLiteral("x%1.jsonl").arg(number), codexLog("/a/b"), 5s);
  }
  EXPECT_EQ(scan().size(), 160U);
}

TEST_F(FleetScannerTest, WithoutAnyLogsThereAreNoSessions) { EXPECT_TRUE(scan().empty()); }

TEST_F(FleetScannerTest, ARequestedStopLeavesTheRestOut) {
  m_home.putClaude(QStringLiteral("s.jsonl"), ended, 5s);
  std::stop_source stop;
  stop.request_stop();
  EXPECT_TRUE(FleetScanner::scan(m_home.home(), m_home.now(), stop.get_token()).empty());
}

TEST(FleetStatusTest, RawValues) {
  EXPECT_EQ(rawValue(FleetStatus::running), QStringLiteral("running"));
  EXPECT_EQ(rawValue(FleetStatus::done), QStringLiteral("done"));
  EXPECT_EQ(rawValue(FleetStatus::idle), QStringLiteral("idle"));
}

} // namespace
} // namespace morvo
