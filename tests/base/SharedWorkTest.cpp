#include "base/SharedWork.h"

#include "support/Awaited.h"
#include "support/ManualScheduler.h"

#include <QCoreApplication>

#include <atomic>
#include <gtest/gtest.h>
#include <semaphore>

namespace morvo {
namespace {

using namespace std::chrono_literals;

constexpr Duration patience = 10s;

using Answer = std::optional<std::optional<int>>;
const Answer nothing{std::in_place};
Answer value(int number) { return std::make_optional(std::optional(number)); }

class SharedWorkTest : public testing::Test {
protected:
  /// Work that ends when the test lets it, and may outlive it.
  struct Gate {
    std::counting_semaphore<> begun{0};
    std::counting_semaphore<> open{0};
    std::counting_semaphore<> ended{0};
    std::atomic<int> runs = 0;
  };

  [[nodiscard]] auto gated() const {
    return [gate = m_gate](const std::stop_token &) {
      const int run = ++gate->runs;
      gate->begun.release();
      gate->open.acquire();
      gate->ended.release();
      return run;
    };
  }

  test::ManualClock m_clock;
  test::ManualScheduler m_scheduler{m_clock};
  std::optional<WorkerPool> m_pool{std::in_place};
  std::shared_ptr<Gate> m_gate = std::make_shared<Gate>();
  std::optional<SharedWork<int>> m_work{std::in_place, *m_pool, m_scheduler, patience};
};

TEST_F(SharedWorkTest, TheValueComesAndNoTimerIsLeft) {
  const auto work = [](const std::stop_token &) { return 7; };
  EXPECT_EQ(test::Awaited(m_work->run(work)).wait(), value(7));
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(SharedWorkTest, WhoAsksMeanwhileWaitsForTheSamePieceAndWhoAsksLaterForAnother) {
  const auto work = gated();
  const test::Awaited first(m_work->run(work));
  const test::Awaited second(m_work->run(work));
  m_gate->open.release();
  EXPECT_EQ(first.wait(), value(1));
  EXPECT_EQ(second.wait(), value(1));
  m_gate->open.release();
  EXPECT_EQ(test::Awaited(m_work->run(work)).wait(), value(2));
}

TEST_F(SharedWorkTest, NobodyWaitsForeverAndStuckWorkKeepsOneThreadOnly) {
  const auto work = gated();
  const test::Awaited first(m_work->run(work));
  m_gate->begun.acquire();
  m_scheduler.advance(patience - 1ms);
  EXPECT_FALSE(first.isDone());
  m_scheduler.advance(1ms);
  EXPECT_EQ(first.wait(), nothing);
  for (int round = 0; round < 100; ++round) {
    const test::Awaited later(m_work->run(work));
    m_scheduler.advance(patience);
    EXPECT_EQ(later.wait(), nothing);
  }
  const auto other = [](const std::stop_token &) { return true; };
  EXPECT_TRUE(test::Awaited(m_pool->run(other)).wait().value_or(std::nullopt).has_value());
  EXPECT_EQ(m_gate->runs, 1);
  m_gate->open.release();
  m_gate->ended.acquire();
}

TEST_F(SharedWorkTest, WhenStuckWorkEndsTheNextIsDoneAnew) {
  const auto work = gated();
  const test::Awaited first(m_work->run(work));
  m_scheduler.advance(patience);
  const test::Awaited second(m_work->run(work));
  m_gate->open.release();
  EXPECT_EQ(second.wait(), value(1));
  m_gate->open.release();
  EXPECT_EQ(test::Awaited(m_work->run(work)).wait(), value(2));
}

TEST_F(SharedWorkTest, TheEndOfThePoolEndsTheWaitingAtOnce) {
  const auto work = gated();
  const test::Awaited waiting(m_work->run(work));
  m_gate->begun.acquire();
  m_work.reset();
  m_pool.reset();
  EXPECT_TRUE(waiting.isDone());
  EXPECT_EQ(m_scheduler.pending(), 0U);
  m_gate->open.release();
  m_gate->ended.acquire();
}

TEST_F(SharedWorkTest, WithoutAThreadThereIsNothing) {
  WorkerPool none(1, [](const std::function<void()> &) { return false; });
  SharedWork<int> work(none, m_scheduler, patience);
  const auto never = [](const std::stop_token &) { return 1; };
  const test::Awaited first(work.run(never));
  EXPECT_TRUE(first.isDone());
  EXPECT_EQ(first.wait(), nothing);
  EXPECT_TRUE(test::Awaited(work.run(never)).isDone());
}

} // namespace
} // namespace morvo
