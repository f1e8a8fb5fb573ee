#include "platform/linux/JobThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace morvo {

struct JobThread::State {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> jobs;
  bool isBusy = false;
  bool isEnding = false;
};

JobThread::JobThread() : m_state(std::make_shared<State>()) {
  std::thread([state = m_state] { run(state); }).detach();
}

JobThread::~JobThread() {
  std::deque<std::function<void()>> dropped;
  {
    const std::scoped_lock lock(m_state->mutex);
    m_state->isEnding = true;
    dropped.swap(m_state->jobs);
  }
  m_state->changed.notify_all();
}

void JobThread::post(std::function<void()> job) {
  {
    const std::scoped_lock lock(m_state->mutex);
    m_state->jobs.push_back(std::move(job));
  }
  m_state->changed.notify_all();
}

void JobThread::drain() {
  std::unique_lock lock(m_state->mutex);
  m_state->changed.wait(lock, [this] { return m_state->jobs.empty() && !m_state->isBusy; });
}

void JobThread::run(const std::shared_ptr<State> &state) {
  std::unique_lock lock(state->mutex);
  for (;;) {
    state->changed.wait(lock, [&] { return state->isEnding || !state->jobs.empty(); });
    if (state->isEnding) {
      return;
    }
    auto job = std::move(state->jobs.front());
    state->jobs.pop_front();
    state->isBusy = true;
    lock.unlock();
    job();
    job = nullptr;
    lock.lock();
    state->isBusy = false;
    state->changed.notify_all();
  }
}

} // namespace morvo
