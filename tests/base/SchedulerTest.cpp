#include "base/QtScheduler.h"
#include "support/ManualScheduler.h"

#include <QCoroTask>
#include <QElapsedTimer>
#include <QEventLoop>

#include <gtest/gtest.h>
#include <vector>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using test::ManualClock;
using test::ManualScheduler;

class ManualSchedulerTest : public testing::Test {
protected:
  ManualClock m_clock;
  ManualScheduler m_scheduler{m_clock};
};

TEST_F(ManualSchedulerTest, RunsWhatFallsDueInOrderOfTime) {
  std::vector<int> order;
  const auto late = m_scheduler.after(3s, [&] { order.push_back(3); });
  const auto early = m_scheduler.after(1s, [&] { order.push_back(1); });
  const auto each = m_scheduler.every(2s, [&] { order.push_back(2); });
  m_scheduler.advance(4s);
  EXPECT_EQ(order, (std::vector{1, 2, 3, 2}));
}

TEST_F(ManualSchedulerTest, AForgottenTimerDoesNotRun) {
  bool ran = false;
  {
    const auto timer = m_scheduler.after(1s, [&] { ran = true; });
  }
  m_scheduler.advance(2s);
  EXPECT_FALSE(ran);
}

TEST_F(ManualSchedulerTest, ATimerMayCancelItself) {
  int runs = 0;
  Scheduler::Timer timer;
  timer = m_scheduler.every(1s, [&] {
    ++runs;
    timer.cancel();
  });
  m_scheduler.advance(5s);
  EXPECT_EQ(runs, 1);
}

QCoro::Task<> loop(Scheduler &scheduler, std::stop_token stop, int &rounds, bool &ended) {
  for (;;) {
    const bool slept = co_await scheduler.sleep(10s, stop);
    if (!slept) {
      break;
    }
    ++rounds;
  }
  ended = true;
}

TEST_F(ManualSchedulerTest, SleepResumesAfterItsTimeAndEndsWhenStopped) {
  int rounds = 0;
  bool ended = false;
  std::stop_source owner;
  const auto task = loop(m_scheduler, owner.get_token(), rounds, ended);
  m_scheduler.advance(35s);
  EXPECT_EQ(rounds, 3);
  owner.request_stop();
  EXPECT_TRUE(ended);
  m_scheduler.advance(60s);
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST(QtSchedulerTest, RunsOnTheEventLoopAndACallbackMayDropItsTimer) {
  QtScheduler scheduler;
  QEventLoop events;
  int ticks = 0;
  Scheduler::Timer timer;
  timer = scheduler.every(1ms, [&] {
    if (++ticks == 3) {
      timer = {};
      events.quit();
    }
  });
  EXPECT_TRUE(timer.isActive());
  events.exec();
  EXPECT_EQ(ticks, 3);
  EXPECT_FALSE(timer.isActive());
}

TEST(QtSchedulerTest, AWaitLongerThanAnyTimerIsNeitherNegativeNorShort) {
  QtScheduler scheduler;
  QEventLoop events;
  bool ran = false;
  const auto years = scheduler.after(std::chrono::hours(24) * 10000, [&] { ran = true; });
  EXPECT_TRUE(years.isActive());
  const auto soon = scheduler.after(20ms, [&] { events.quit(); });
  events.exec();
  EXPECT_FALSE(ran);
  EXPECT_TRUE(years.isActive());
}

TEST(QtSchedulerTest, NoDelayIsShorterThanAskedFor) {
  QtScheduler scheduler;
  QEventLoop events;
  std::vector<Scheduler::Timer> timers;
  std::vector<std::chrono::nanoseconds> tooEarly;
  int left = 40;
  for (int step = 0; step < left; ++step) {
    const auto delay = 250ms + step * 1ms;
    QElapsedTimer elapsed;
    elapsed.start();
    timers.push_back(scheduler.after(delay, [&, delay, elapsed] {
      const std::chrono::nanoseconds waited(elapsed.nsecsElapsed());
      if (waited < delay) {
        tooEarly.push_back(delay - waited);
      }
      if (--left == 0) {
        events.quit();
      }
    }));
  }
  events.exec();
  EXPECT_EQ(tooEarly.size(), 0U);
}

TEST(QtSchedulerTest, NothingRunsFromWithinTheCall) {
  QtScheduler scheduler;
  QEventLoop events;
  bool inside = true;
  bool ranInside = false;
  const auto timer = scheduler.after(-5s, [&] {
    ranInside = inside;
    events.quit();
  });
  inside = false;
  events.exec();
  EXPECT_FALSE(ranInside);
}

} // namespace
} // namespace morvo
