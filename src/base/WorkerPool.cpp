#include "base/WorkerPool.h"

#include <QMetaObject>
#include <QObject>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace morvo {
namespace {

/// What the scheduler thinks of the threads: anything else on the machine goes first.
constexpr int lowPriority = 10;

/// Linux keeps this value per thread.
void lowerPriority() {
  // Without the low priority the work is still done.
  static_cast<void>(::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), lowPriority));
}

bool startDetached(std::function<void()> work) {
  try {
    std::thread(std::move(work)).detach();
  } catch (const std::system_error &) {
    return false;
  }
  return true;
}

} // namespace

struct WorkerPool::Waiting {
  WorkerPool *pool = nullptr;
  Job job;
  std::coroutine_handle<> coroutine;
  bool isDone = false;
};

/// What the threads know; it lives for as long as any of them runs.
struct WorkerPool::Threads {
  struct Entry {
    Job job;
    std::function<void()> onDone; ///< For the pool's thread.
  };

  std::mutex mutex;
  std::condition_variable ended;
  std::deque<Entry> entries;
  std::stop_source stop;
  /// Lives in the pool's thread; none when the pool is gone.
  QObject *receiver = nullptr;
  int running = 0;
  int most = 1;
  Starter starter;

  /// False when nobody will ever do it.
  static bool post(const std::shared_ptr<Threads> &threads, Entry entry) {
    const std::scoped_lock lock(threads->mutex);
    if (threads->stop.stop_requested()) {
      return false;
    }
    threads->entries.push_back(std::move(entry));
    if (threads->running < threads->most) {
      ++threads->running;
      const bool hasBegun = threads->starter([threads] {
        lowerPriority();
        threads->work();
      });
      if (!hasBegun && --threads->running == 0) {
        // What runs takes all that waits, so this was the only one.
        threads->entries.pop_back();
        return false;
      }
    }
    return true;
  }

  void work() {
    std::unique_lock lock(mutex);
    while (!entries.empty()) {
      Entry entry = std::move(entries.front());
      entries.pop_front();
      lock.unlock();
      entry.job(stop.get_token());
      entry.job = nullptr;
      lock.lock();
      if (receiver != nullptr) {
        QMetaObject::invokeMethod(receiver, std::move(entry.onDone), Qt::QueuedConnection);
      }
    }
    --running;
    ended.notify_all();
  }
};

struct WorkerPool::Waiters {
  QObject receiver;
  std::vector<std::shared_ptr<Waiting>> states;

  /// Lets the coroutine go on, if it still waits.
  void resume(const std::shared_ptr<Waiting> &state) {
    if (std::erase(states, state) > 0) {
      state->isDone = true;
      state->coroutine.resume();
    }
  }
};

WorkerPool::WorkerPool(int threads) : WorkerPool(threads, startDetached) {}

WorkerPool::WorkerPool(int threads, Starter starter)
    : m_threads(std::make_shared<Threads>()), m_waiters(std::make_unique<Waiters>()) {
  m_threads->receiver = &m_waiters->receiver;
  m_threads->most = std::max(threads, 1);
  m_threads->starter = std::move(starter);
}

WorkerPool::~WorkerPool() {
  {
    std::unique_lock lock(m_threads->mutex);
    m_threads->receiver = nullptr;
    m_threads->entries.clear();
    m_threads->stop.request_stop();
    m_threads->ended.wait_for(lock, patience, [this] { return m_threads->running == 0; });
  }
  // What asks for more meanwhile gets nothing, at once.
  for (const auto &state : std::exchange(m_waiters->states, {})) {
    state->coroutine.resume();
  }
}

WorkerPool::Done::Done(WorkerPool &pool, Job job) : m_waiting(std::make_shared<Waiting>()) {
  m_waiting->pool = &pool;
  m_waiting->job = std::move(job);
}

bool WorkerPool::Done::await_suspend(std::coroutine_handle<> coroutine) const {
  m_waiting->coroutine = coroutine;
  Waiters &waiters = *m_waiting->pool->m_waiters;
  const bool isPosted =
      Threads::post(m_waiting->pool->m_threads,
                    {.job = std::move(m_waiting->job),
                     .onDone = [&waiters, state = m_waiting] { waiters.resume(state); }});
  if (isPosted) {
    // The end comes through the event loop, so not before this.
    waiters.states.push_back(m_waiting);
  }
  return isPosted;
}

bool WorkerPool::Done::await_resume() const noexcept { return m_waiting->isDone; }

} // namespace morvo
