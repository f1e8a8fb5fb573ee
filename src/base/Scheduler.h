#pragma once

#include "base/Time.h"

#include <QCoroTask>

#include <functional>
#include <memory>
#include <stop_token>

namespace morvo {

/// Runs work later, on the thread that owns the scheduler. Handed in wherever something waits, so
/// that tests drive hours of timers without waiting. Not thread-safe.
class Scheduler {
public:
  /// A pending callback. Destroying or cancelling the handle takes the callback back; a callback
  /// may destroy its own handle.
  class Timer {
  public:
    Timer() = default;
    explicit Timer(std::unique_ptr<struct TimerState> state);
    Timer(const Timer &) = delete;
    Timer &operator=(const Timer &) = delete;
    Timer(Timer &&other) noexcept;
    Timer &operator=(Timer &&other) noexcept;
    ~Timer();

    void cancel();
    /// Whether the callback is still to come.
    [[nodiscard]] bool isActive() const;

  private:
    std::unique_ptr<struct TimerState> m_state;
  };

  virtual ~Scheduler() = default;

  /// Calls `work` once, `delay` from now (a negative delay counts as none), never from within this
  /// call.
  [[nodiscard]] virtual Timer after(Duration delay, std::function<void()> work) = 0;

  /// Calls `work` each `period` (more than nothing), for the first time one period from now.
  [[nodiscard]] virtual Timer every(Duration period, std::function<void()> work) = 0;

  /// `const bool slept = co_await scheduler.sleep(…)`: true after `duration`, false as soon as
  /// `stop` is requested; a coroutine that outlives its owner must return at once on false. The
  /// stop must be requested on the scheduler's thread. Do not await in a loop's condition: GCC 12
  /// destroys the awaited temporary twice there.
  [[nodiscard]] QCoro::Task<bool> sleep(Duration duration, std::stop_token stop = {});
};

/// What a `Scheduler` implementation keeps of one timer; destroying it cancels the timer.
struct TimerState {
  TimerState() = default;
  TimerState(const TimerState &) = delete;
  TimerState &operator=(const TimerState &) = delete;
  virtual ~TimerState() = default;
  [[nodiscard]] virtual bool isActive() const = 0;
};

} // namespace morvo
