#include "usage/MorvoLiveQuotaProber.h"

#include "support/StandIns.h"

#include <QCoreApplication>

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>
#include <thread>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Limits = MorvoLiveQuotaProber::Limits;

/// The probes on stand-ins for all commands, in a home of the test's own.
class MorvoLiveQuotaProberTest : public test::StandIns {
protected:
  MorvoLiveQuotaProberTest() {
    m_environment =
        Environment().with(u"PATH"_s, m_folder.filePath(u"bin"_s) + u":/usr/bin:/bin"_s);
    m_environment = m_environment.with(u"MORVO_CAUT_PATH"_s, m_folder.filePath(u"bin/caut"_s));
  }

  void hasClaude(const QString &script) {
    standIn(u"bin/claude"_s, countedAs(u"claude"_s) + script);
  }
  void hasCodex() { standIn(u"bin/codex"_s, countedAs(u"codex"_s)); }
  void hasCaut(const QString &json) {
    standIn(u"bin/caut"_s, countedAs(u"caut"_s) + u"cat <<'END'\n%1\nEND"_s.arg(json));
  }
  void codexLogSays(double primary) {
    putFile(u"home/.codex/sessions/log.jsonl"_s, R"({"rate_limits":{"primary":{"used_percent":)" +
                                                     QByteArray::number(primary) +
                                                     R"(},"plan_type":"log"}})");
  }
  [[nodiscard]] QString countedAs(const QString &name) const {
    return u"echo >> %1\n"_s.arg(path(name + u".runs"_s));
  }
  [[nodiscard]] qsizetype runs(const QString &name) const {
    return written(name + u".runs"_s).size();
  }

  void makeProber() {
    const HomeFolder home{path(u"home"_s)};
    m_prober = std::make_unique<MorvoLiveQuotaProber>(
        m_clock, ProbeContext{.home = home,
                              .environment = m_environment,
                              .scheduler = &m_scheduler,
                              .pool = &*m_pool,
                              .codex = std::make_shared<CodexUsageReader>(home)});
  }
  Limits liveMap(bool includeCaut = true) {
    if (!m_prober) {
      makeProber();
    }
    return test::Awaited(m_prober->liveMap(includeCaut)).wait().value_or(Limits());
  }

  const QString m_usageText =
      u"printf 'Current session\\n 42%% used\\nCurrent week (all models)\\n 17%% left\\n'"_s;
  const LiveRateLimit m_usage{.primaryPct = 42, .weeklyPct = 83, .plan = u"claude-cli"_s};
  std::optional<WorkerPool> m_pool{std::in_place};
  std::unique_ptr<MorvoLiveQuotaProber> m_prober;
};

TEST_F(MorvoLiveQuotaProberTest, WithoutLogsAndCommandsThereIsNoFigure) {
  EXPECT_TRUE(liveMap().isEmpty());
}

TEST_F(MorvoLiveQuotaProberTest, EachSourceTellsOfItsAgents) {
  codexLogSays(7);
  hasClaude(m_usageText);
  hasCaut(uR"([{"provider":"gemini","usage":{"primary":{"usedPercent":3}}}])"_s);
  EXPECT_EQ(liveMap(), (Limits{{u"codex"_s, {.primaryPct = 7, .plan = u"log"_s}},
                               {u"claude"_s, m_usage},
                               {u"gemini"_s, {.primaryPct = 3, .plan = u"caut"_s}}}));
}

TEST_F(MorvoLiveQuotaProberTest, TheLogsAndTheCommandsAreTrustedMoreThanCaut) {
  codexLogSays(7);
  hasClaude(m_usageText);
  hasCaut(uR"([{"provider":"openai","usage":{"primary":{"usedPercent":99}}},
               {"provider":"claude","usage":{"primary":{"usedPercent":99}}}])"_s);
  const Limits limits = liveMap();
  EXPECT_EQ(limits.value(u"codex"_s).primaryPct, 7);
  EXPECT_EQ(limits.value(u"claude"_s), m_usage);
  EXPECT_EQ(limits.size(), 2);
}

TEST_F(MorvoLiveQuotaProberTest, CautFillsWhatTheOthersDoNotTell) {
  hasClaude(u"exit 1"_s);
  hasCaut(uR"({"data":[{"provider":"claude-code","usage":{"primary":{"usedPercent":9}}}]})"_s);
  EXPECT_EQ(liveMap().value(u"claude"_s), (LiveRateLimit{.primaryPct = 9, .plan = u"caut"_s}));
  EXPECT_TRUE(liveMap(false).isEmpty());
  EXPECT_EQ(runs(u"caut"_s), 1);
}

TEST_F(MorvoLiveQuotaProberTest, WithTheCommandsSwitchedOffTheLogsAndCautStillTell) {
  m_environment = m_environment.with(u"MORVO_DISABLE_CLI_PROBES"_s, u"1"_s);
  codexLogSays(7);
  hasClaude(m_usageText);
  hasCaut(uR"([{"provider":"qwen","usage":{"primary":{"usedPercent":3}}}])"_s);
  const Limits limits = liveMap();
  EXPECT_TRUE(limits.contains(u"codex"_s));
  EXPECT_TRUE(limits.contains(u"qwen"_s));
  EXPECT_EQ(limits.size(), 2);
  EXPECT_EQ(runs(u"claude"_s), 0);
}

TEST_F(MorvoLiveQuotaProberTest, WithCautSwitchedOffItIsNotRun) {
  m_environment = m_environment.with(u"MORVO_DISABLE_CAUT"_s, u"1"_s);
  hasCaut(uR"([{"provider":"qwen","usage":{"primary":{"usedPercent":3}}}])"_s);
  EXPECT_TRUE(liveMap().isEmpty());
  EXPECT_EQ(runs(u"caut"_s), 0);
}

TEST_F(MorvoLiveQuotaProberTest, ClaudesFigureIsAskedForAgainAfterAHundredAndFiftySeconds) {
  hasClaude(m_usageText);
  EXPECT_EQ(liveMap().value(u"claude"_s), m_usage);
  hasClaude(u"echo Current session 50% used"_s);
  m_clock.advance(MorvoLiveQuotaProber::cacheLife - 1ms);
  EXPECT_EQ(liveMap().value(u"claude"_s), m_usage);
  EXPECT_EQ(runs(u"claude"_s), 1);
  m_clock.advance(1ms);
  EXPECT_EQ(liveMap().value(u"claude"_s),
            (LiveRateLimit{.primaryPct = 50, .plan = u"claude-cli"_s}));
  EXPECT_EQ(runs(u"claude"_s), 2);
}

TEST_F(MorvoLiveQuotaProberTest, AFailureIsNotRememberedAndAnOldFigureNotGivenForIt) {
  hasClaude(u"echo Please run /login"_s);
  EXPECT_TRUE(liveMap().isEmpty());
  hasClaude(m_usageText);
  EXPECT_EQ(liveMap().value(u"claude"_s), m_usage);
  EXPECT_EQ(runs(u"claude"_s), 2);
  hasClaude(u"echo Please run /login"_s);
  m_clock.advance(MorvoLiveQuotaProber::cacheLife);
  EXPECT_TRUE(liveMap().isEmpty());
  EXPECT_EQ(runs(u"claude"_s), 3);
}

TEST_F(MorvoLiveQuotaProberTest, AWeekWithoutASessionIsNoFigure) {
  hasClaude(u"echo 'Current week (all models) 5% used'"_s);
  EXPECT_TRUE(liveMap().isEmpty());
}

TEST_F(MorvoLiveQuotaProberTest, ClaudeAnswersForTheStoredLoginInTheRootFolder) {
  m_environment =
      m_environment.with(u"CLAUDE_CODE_OAUTH_TOKEN"_s, u"secret"_s).with(u"KEPT"_s, u"x"_s);
  hasClaude(
      u"{ pwd; printf '%s|' \"$@\"; echo \"<$CLAUDE_CODE_OAUTH_TOKEN><$KEPT>\"; } > %1; "_s.arg(
          path(u"told"_s)) +
      m_usageText);
  EXPECT_FALSE(liveMap().isEmpty());
  EXPECT_EQ(written(u"told"_s), "/\n/usage|--allowed-tools||<><x>\n");
}

TEST_F(MorvoLiveQuotaProberTest, CodexIsNeverRunAndItsLastFigureIsKeptForAWhileWhereItIsInstalled) {
  hasCodex();
  codexLogSays(7);
  EXPECT_EQ(liveMap().value(u"codex"_s).primaryPct, 7);
  ASSERT_TRUE(QFile::remove(path(u"home/.codex/sessions/log.jsonl"_s)));
  EXPECT_EQ(liveMap().value(u"codex"_s).primaryPct, 7);
  codexLogSays(8);
  EXPECT_EQ(liveMap().value(u"codex"_s).primaryPct, 8) << "the logs come first";
  ASSERT_TRUE(QFile::remove(path(u"home/.codex/sessions/log.jsonl"_s)));
  m_clock.advance(MorvoLiveQuotaProber::cacheLife);
  EXPECT_TRUE(liveMap().isEmpty());
  EXPECT_EQ(runs(u"codex"_s), 0);
}

TEST_F(MorvoLiveQuotaProberTest, TheCommandsRunSideBySideAndAStallOfOneLeavesTheOther) {
  // Neither answers before both have begun.
  const QString both = u"echo > %1; while ! [ -s %2 ]; do sleep 0.01; done; "_s;
  hasClaude(both.arg(path(u"claude.on"_s), path(u"caut.on"_s)) +
            u"echo $$ > %1; exec sleep 600"_s.arg(path(u"claude.pid"_s)));
  standIn(u"bin/caut"_s,
          both.arg(path(u"caut.on"_s), path(u"claude.on"_s)) +
              uR"(echo '[{"provider":"qwen","usage":{"primary":{"usedPercent":3}}}]')"_s);
  makeProber();
  const test::Awaited map(m_prober->liveMap(true));
  const pid_t claude = writtenPid(u"claude.pid"_s);
  ASSERT_GT(claude, 0);
  // caut has ended when only claude's deadline is left to wait for.
  ASSERT_TRUE(test::runUntil([this] { return m_scheduler.pending() == 1; }));
  m_scheduler.advance(18s);
  const auto limits = map.wait();
  ASSERT_TRUE(limits);
  EXPECT_EQ(limits->keys(), QStringList{u"qwen"_s});
  EXPECT_TRUE(becomesGone(claude));
}

TEST_F(MorvoLiveQuotaProberTest, TheEndOfTheProberEndsTheCommandsAndTheWait) {
  hasClaude(u"trap '' TERM; echo $$ > %1; while :; do sleep 0.01; done"_s.arg(path(u"pid"_s)));
  makeProber();
  const test::Awaited map(m_prober->liveMap(true));
  const pid_t claude = writtenPid(u"pid"_s);
  m_prober.reset();
  EXPECT_EQ(map.wait(), Limits());
  EXPECT_TRUE(becomesGone(claude));
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(MorvoLiveQuotaProberTest, TheEndOfTheProberAndThePoolMayComeAtAnyStep) {
  hasClaude(u"exec sleep 600"_s);
  hasCaut(u"[]"_s);
  codexLogSays(7);
  for (int steps = 0; steps < 40; ++steps) {
    m_pool.emplace();
    makeProber();
    const test::Awaited map(m_prober->liveMap(true));
    for (int step = 0; step < steps; ++step) {
      QCoreApplication::processEvents();
    }
    m_prober.reset();
    m_pool.reset();
    EXPECT_EQ(map.wait(), Limits());
  }
}

TEST_F(MorvoLiveQuotaProberTest, ADiskThatDoesNotAnswerLeavesOnlyItsOwnFiguresOut) {
  hasClaude(m_usageText);
  hasCodex();
  const auto release = std::make_shared<std::counting_semaphore<>>(0);
  const auto begun = std::make_shared<std::atomic<int>>(0);
  m_pool.emplace(8, [release, begun](const std::function<void()> &work) {
    ++*begun;
    std::thread([release, work] {
      release->acquire();
      work();
    }).detach();
    return true;
  });
  makeProber();
  for (int round = 0; round < 20; ++round) {
    const test::Awaited limits(m_prober->liveMap(true));
    m_scheduler.advance(ProbeContext::patience);
    EXPECT_EQ(limits.wait(), Limits());
  }
  EXPECT_EQ(*begun, 4) << "one for the logs and one for each command";
  release->release(100);
  EXPECT_EQ(liveMap().value(u"claude"_s), m_usage) << "as soon as it answers";
}

} // namespace
} // namespace morvo
