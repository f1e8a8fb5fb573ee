#include "base/WorkerPool.h"

#include "support/Awaited.h"

#include <QThread>

#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <semaphore>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace morvo {
namespace {

TEST(WorkerPoolTest, TheValueOfTheWorkComesBackToTheThreadThatAsked) {
  WorkerPool pool;
  const auto work = [](const std::stop_token &) { return QThread::currentThreadId(); };
  const test::Awaited done(pool.run(work));
  EXPECT_FALSE(done.isDone());
  const auto value = done.wait();
  ASSERT_TRUE(value && *value);
  EXPECT_NE(**value, QThread::currentThreadId());
}

TEST(WorkerPoolTest, TheThreadsHaveALowerPriorityThanTheMainThread) {
  WorkerPool pool;
  const auto work = [](const std::stop_token &) {
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
  };
  const auto value = test::Awaited(pool.run(work)).wait();
  ASSERT_TRUE(value && *value);
  EXPECT_GT(**value, ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid())));
}

TEST(WorkerPoolTest, AsManyJobsAsThereAreThreadsRunAtOnce) {
  WorkerPool pool(2);
  const auto both = std::make_shared<std::latch>(2);
  // Each can only end while the other runs.
  const auto work = [both](const std::stop_token &) {
    both->arrive_and_wait();
    return true;
  };
  const test::Awaited first(pool.run(work));
  const test::Awaited second(pool.run(work));
  EXPECT_TRUE(first.wait().has_value());
  EXPECT_TRUE(second.wait().has_value());
}

TEST(WorkerPoolTest, NoMoreJobsThanThreadsRunAtOnceAndAllAreDone) {
  WorkerPool pool(2);
  const auto running = std::make_shared<std::atomic<int>>(0);
  const auto work = [running](const std::stop_token &) {
    const int now = ++*running;
    --*running;
    return now;
  };
  std::vector<test::Awaited<std::optional<int>>> jobs;
  for (int number = 0; number < 200; ++number) {
    jobs.emplace_back(pool.run(work));
  }
  for (const auto &job : jobs) {
    const auto most = job.wait();
    ASSERT_TRUE(most && *most);
    EXPECT_LE(**most, 2);
  }
}

TEST(WorkerPoolTest, AtTheEndRunningWorkIsAskedToStopAndNothingComesOfIt) {
  std::optional<WorkerPool> pool(std::in_place);
  const auto begun = std::make_shared<std::binary_semaphore>(0);
  const auto sawStop = std::make_shared<std::atomic<bool>>(false);
  const auto work = [begun, sawStop](const std::stop_token &stop) {
    begun->release();
    while (!stop.stop_requested()) {
      QThread::yieldCurrentThread();
    }
    *sawStop = true;
    return 1;
  };
  const test::Awaited job(pool->run(work));
  begun->acquire();
  pool.reset();
  ASSERT_TRUE(job.isDone());
  EXPECT_EQ(job.wait(), std::optional<std::optional<int>>(std::in_place));
  EXPECT_TRUE(*sawStop);
}

TEST(WorkerPoolTest, WorkThatDoesNotStopIsNotWaitedFor) {
  const auto begun = std::make_shared<std::binary_semaphore>(0);
  const auto release = std::make_shared<std::binary_semaphore>(0);
  const auto ended = std::make_shared<std::binary_semaphore>(0);
  {
    WorkerPool pool(1);
    const auto work = [begun, release, ended](const std::stop_token &) {
      begun->release();
      release->acquire();
      ended->release();
      return 1;
    };
    const test::Awaited stuck(pool.run(work));
    const test::Awaited behind(pool.run(work));
    begun->acquire();
  }
  // Reaching this is the point: it still waits for us.
  EXPECT_FALSE(ended->try_acquire());
  release->release();
  ended->acquire();
  EXPECT_FALSE(begun->try_acquire()) << "a job began after the end of the pool";
}

TEST(WorkerPoolTest, ACoroutineThatWaitsAtTheEndGoesOnWithNothing) {
  std::optional<WorkerPool> pool(std::in_place, 1);
  const auto work = [](const std::stop_token &) { return 1; };
  std::vector<test::Awaited<std::optional<int>>> jobs;
  for (int number = 0; number < 50; ++number) {
    jobs.emplace_back(pool->run(work));
  }
  pool.reset();
  for (const auto &job : jobs) {
    ASSERT_TRUE(job.isDone());
    EXPECT_EQ(job.wait(), std::optional<std::optional<int>>(std::in_place));
  }
}

template <typename Work>
concept canBeRun = requires(WorkerPool &pool, Work work) { pool.run(std::forward<Work>(work)); };

TEST(WorkerPoolTest, WorkWithoutANameIsRefused) {
  const auto work = [](const std::stop_token &) { return 1; };
  using Work = std::remove_const_t<decltype(work)>;
  EXPECT_TRUE(canBeRun<const Work &>);
  EXPECT_TRUE(canBeRun<Work &>);
  EXPECT_FALSE(canBeRun<Work &&>);
}

TEST(WorkerPoolTest, WhereNoThreadIsToBeHadTheCoroutineGoesOnWithNothing) {
  bool mayBegin = false;
  WorkerPool pool(2, [&mayBegin](std::function<void()> work) {
    if (mayBegin) {
      std::thread(std::move(work)).detach();
    }
    return mayBegin;
  });
  const auto work = [](const std::stop_token &) { return 1; };
  const test::Awaited refused(pool.run(work));
  ASSERT_TRUE(refused.isDone());
  EXPECT_EQ(refused.wait(), std::optional<std::optional<int>>(std::in_place));
  mayBegin = true;
  const test::Awaited done(pool.run(work));
  EXPECT_EQ(done.wait(), std::optional(std::optional(1)));
}

TEST(WorkerPoolTest, WhereNoFurtherThreadIsToBeHadTheOthersDoTheWork) {
  int begun = 0;
  WorkerPool pool(2, [&begun](std::function<void()> work) {
    if (begun > 0) {
      return false;
    }
    ++begun;
    std::thread(std::move(work)).detach();
    return true;
  });
  const auto release = std::make_shared<std::binary_semaphore>(0);
  const auto waits = [release](const std::stop_token &) {
    release->acquire();
    return 1;
  };
  const auto work = [](const std::stop_token &) { return 2; };
  const test::Awaited first(pool.run(waits));
  const test::Awaited second(pool.run(work));
  EXPECT_FALSE(second.isDone());
  release->release();
  EXPECT_EQ(first.wait(), std::optional(std::optional(1)));
  EXPECT_EQ(second.wait(), std::optional(std::optional(2)));
}

/// Asks again as soon as it was let down.
QCoro::Task<int> askUntilRefused(WorkerPool *pool) {
  const auto work = [](const std::stop_token &stop) {
    while (!stop.stop_requested()) {
      QThread::yieldCurrentThread();
    }
    return 1;
  };
  const auto first = co_await pool->run(work);
  const auto second = co_await pool->run(work);
  co_return (first ? 1 : 0) + (second ? 1 : 0);
}

TEST(WorkerPoolTest, WhoAsksDuringTheEndGetsNothingAtOnce) {
  std::optional<WorkerPool> pool(std::in_place);
  const test::Awaited job(askUntilRefused(&*pool));
  pool.reset();
  ASSERT_TRUE(job.isDone());
  EXPECT_EQ(job.wait(), 0);
}

} // namespace
} // namespace morvo
