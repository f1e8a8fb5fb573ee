#include "base/Scheduler.h"

#include <coroutine>
#include <optional>
#include <utility>

namespace morvo {
namespace {

/// Suspends a coroutine until a timer fires or a stop is requested, whichever comes first.
///
/// GCC 12 copies the awaiter that a promise's `await_transform` returns by reference, so what must
/// stay in its place is shared by the copies.
class Sleep {
public:
  Sleep(Scheduler &scheduler, Duration duration, std::stop_token stop)
      : m_state(std::make_shared<State>(&scheduler, duration, std::move(stop))) {}

  [[nodiscard]] bool await_ready() const noexcept { return m_state->stop.stop_requested(); }

  void await_suspend(std::coroutine_handle<> coroutine) const {
    State *state = m_state.get();
    state->timer = state->scheduler->after(state->duration, [state, coroutine] {
      state->onStop.reset();
      coroutine.resume();
    });
    state->onStop.emplace(state->stop, [state, coroutine] {
      // Both callbacks run on the scheduler's thread, so exactly one of them resumes.
      state->timer.cancel();
      coroutine.resume();
    });
  }

  [[nodiscard]] bool await_resume() const noexcept { return !m_state->stop.stop_requested(); }

private:
  struct State {
    State(Scheduler *owner, Duration length, std::stop_token token)
        : scheduler(owner), duration(length), stop(std::move(token)) {}

    Scheduler *scheduler;
    Duration duration;
    std::stop_token stop;
    Scheduler::Timer timer;
    std::optional<std::stop_callback<std::function<void()>>> onStop;
  };
  std::shared_ptr<State> m_state;
};

} // namespace

Scheduler::Timer::Timer(std::unique_ptr<TimerState> state) : m_state(std::move(state)) {}
Scheduler::Timer::Timer(Timer &&other) noexcept = default;
Scheduler::Timer &Scheduler::Timer::operator=(Timer &&other) noexcept = default;
Scheduler::Timer::~Timer() = default;

void Scheduler::Timer::cancel() { m_state.reset(); }

bool Scheduler::Timer::isActive() const { return m_state && m_state->isActive(); }

QCoro::Task<bool> Scheduler::sleep(Duration duration, std::stop_token stop) {
  const Sleep sleep(*this, duration, std::move(stop));
  co_return co_await sleep;
}

} // namespace morvo
