#include "usage/LocalUsageSource.h"

#include "support/StandIns.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class LocalUsageSourceTest : public test::StandIns {
protected:
  LocalUsageSourceTest() {
    m_environment =
        Environment().with(u"PATH"_s, m_folder.filePath(u"bin"_s) + u":/usr/bin:/bin"_s);
  }

  void hasClaude() { ASSERT_TRUE(QDir(path(u"home"_s)).mkpath(u".claude/projects"_s)); }
  void makeSource() {
    const HomeFolder home{path(u"home"_s)};
    m_source = std::make_unique<LocalUsageSource>(
        m_clock,
        ProbeContext{.home = home,
                     .environment = m_environment,
                     .scheduler = &m_scheduler,
                     .pool = &*m_pool,
                     .codex = std::make_shared<CodexUsageReader>(home)},
        m_logs);
  }
  UsageSnapshot capture() {
    makeSource();
    return snapshotOf(test::Awaited(m_source->capture()));
  }

  using Capture = test::Awaited<std::optional<UsageSnapshot>>;
  static UsageSnapshot snapshotOf(const Capture &capture) {
    return capture.wait().value_or(std::nullopt).value_or(UsageSnapshot());
  }
  /// Whether the capture is over and gave nothing.
  static bool gaveNothing(const Capture &capture) {
    const auto end = capture.wait();
    return end && !*end;
  }

  std::optional<WorkerPool> m_pool{std::in_place};
  LocalUsageSource::LogReader m_logs = [now = m_clock.now()](const SourceAdapter &, double,
                                                             const std::stop_token &) {
    return TokenEvents{TokenEvent{.ts = now, .billable = 12}};
  };
  std::unique_ptr<LocalUsageSource> m_source;
};

TEST_F(LocalUsageSourceTest, AnEmptyHomeGivesAnEmptySnapshot) {
  EXPECT_EQ(capture(), UsageSnapshot());
}

TEST_F(LocalUsageSourceTest, TheLogsAndTheOfficialFiguresComeTogether) {
  hasClaude();
  standIn(u"bin/claude"_s, u"echo Current session 40% used"_s);
  const auto snapshot = capture();
  ASSERT_EQ(snapshot.agents.size(), 1U);
  const DetectedAgent &claude = snapshot.agents.front();
  EXPECT_EQ(claude.windowTokens, 12);
  EXPECT_EQ(claude.liveLimit, (LiveRateLimit{.primaryPct = 40, .plan = u"claude-cli"_s}));
  EXPECT_EQ(snapshot.weekTokens, 12);
}

TEST_F(LocalUsageSourceTest, CautIsAskedWhereNobodyElseTells) {
  hasClaude();
  standIn(u"bin/claude"_s, u"exit 1"_s);
  standIn(u"bin/caut"_s,
          uR"(echo '[{"provider":"claude","plan":"p","usage":{"primary":{"usedPercent":9}}}]')"_s);
  EXPECT_EQ(capture().agents.front().liveLimit,
            (LiveRateLimit{.primaryPct = 9, .plan = u"p·caut"_s}));
}

TEST_F(LocalUsageSourceTest, TheLogsAreReadOffTheMainThread) {
  hasClaude();
  const auto thread = std::make_shared<Qt::HANDLE>(nullptr);
  m_logs = [thread](const SourceAdapter &, double, const std::stop_token &) {
    *thread = QThread::currentThreadId();
    return TokenEvents();
  };
  EXPECT_EQ(capture().agents.size(), 1U);
  EXPECT_NE(*thread, nullptr);
  EXPECT_NE(*thread, QThread::currentThreadId());
}

TEST_F(LocalUsageSourceTest, WithoutAThreadToBeHadNothingIsTold) {
  hasClaude();
  m_pool.emplace(2, [](const std::function<void()> & /*work*/) { return false; });
  makeSource();
  EXPECT_TRUE(gaveNothing(Capture(m_source->capture())));
  const auto agents = test::Awaited(m_source->present()).wait();
  ASSERT_TRUE(agents);
  EXPECT_FALSE(*agents);
}

TEST_F(LocalUsageSourceTest, CapturesThatOverlapAreBothWhole) {
  hasClaude();
  makeSource();
  std::vector<Capture> captures;
  for (int number = 0; number < 8; ++number) {
    captures.emplace_back(m_source->capture());
  }
  for (const auto &each : captures) {
    EXPECT_EQ(snapshotOf(each).weekTokens, 12);
  }
}

TEST_F(LocalUsageSourceTest, WhatIsPresentIsFoundWithoutReadingOrAsking) {
  hasClaude();
  standIn(u"bin/claude"_s, u"echo > %1"_s.arg(path(u"ran"_s)));
  m_logs = [](const SourceAdapter &, double, const std::stop_token &) {
    ADD_FAILURE() << "a log was read";
    return TokenEvents();
  };
  makeSource();
  const auto agents = test::Awaited(m_source->present()).wait();
  ASSERT_TRUE(agents && *agents);
  ASSERT_EQ((*agents)->size(), 1U);
  EXPECT_EQ((*agents)->front().id, u"claude"_s);
  EXPECT_EQ((*agents)->front().weekTokens, 0);
  EXPECT_FALSE(QFile::exists(path(u"ran"_s)));
}

TEST_F(LocalUsageSourceTest, TheEndMayComeAtAnyStepAndLeavesNoCommandBehind) {
  hasClaude();
  standIn(u"bin/claude"_s,
          u"trap '' TERM; echo $$ >> %1; while :; do sleep 0.01; done"_s.arg(path(u"pids"_s)));
  for (int steps = 0; steps < 40; ++steps) {
    m_pool.emplace();
    makeSource();
    const Capture capture(m_source->capture());
    const test::Awaited presence(m_source->present());
    for (int step = 0; step < steps; ++step) {
      QCoreApplication::processEvents();
    }
    m_source.reset();
    m_pool.reset();
    EXPECT_TRUE(gaveNothing(capture));
    EXPECT_TRUE(presence.isDone());
  }
  EXPECT_EQ(m_scheduler.pending(), 0U);
  const auto pids = written(u"pids"_s).split('\n');
  for (const QByteArray &pid : pids) {
    EXPECT_TRUE(pid.isEmpty() || becomesGone(pid.toInt()));
  }
}

TEST_F(LocalUsageSourceTest, ALogReaderThatIsStuckHoldsUpNeitherTheInterfaceNorTheEnd) {
  hasClaude();
  const auto begun = std::make_shared<std::binary_semaphore>(0);
  const auto release = std::make_shared<std::binary_semaphore>(0);
  const auto ended = std::make_shared<std::binary_semaphore>(0);
  m_logs = [begun, release, ended](const SourceAdapter &, double, const std::stop_token &) {
    begun->release();
    release->acquire();
    ended->release();
    return TokenEvents();
  };
  makeSource();
  const Capture capture(m_source->capture());
  begun->acquire();
  QCoreApplication::processEvents();
  EXPECT_FALSE(capture.isDone());
  m_source.reset();
  m_pool.reset();
  EXPECT_TRUE(gaveNothing(capture));
  release->release();
  ended->acquire();
}

TEST_F(LocalUsageSourceTest, CapturesOfALogThatDoesNotAnswerEndAndOnceItDoesTheyTell) {
  hasClaude();
  const auto runs = std::make_shared<std::atomic<int>>(0);
  const auto release = std::make_shared<std::counting_semaphore<>>(0);
  m_logs = [runs, release, now = m_clock.now()](const SourceAdapter &, double,
                                                const std::stop_token &) {
    ++*runs;
    release->acquire();
    return TokenEvents{TokenEvent{.ts = now, .billable = 12}};
  };
  makeSource();
  for (int round = 0; round < 20; ++round) {
    const Capture capture(m_source->capture());
    m_scheduler.advance(LocalUsageSource::patience);
    EXPECT_TRUE(gaveNothing(capture));
    const auto agents = test::Awaited(m_source->present()).wait();
    EXPECT_TRUE(agents && *agents) << "other work goes on";
  }
  EXPECT_EQ(*runs, 1) << "no thread is lost with each capture";
  const Capture capture(m_source->capture());
  release->release(2);
  EXPECT_EQ(snapshotOf(capture).weekTokens, 12);
  EXPECT_EQ(snapshotOf(Capture(m_source->capture())).weekTokens, 12);
}

} // namespace
} // namespace morvo
