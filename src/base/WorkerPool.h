#pragma once

#include <QCoroTask>

#include <chrono>
#include <concepts>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace morvo {

/// Threads of low priority for work that blocks: reading logs, looking through folders. They begin
/// when there is work and end when there has been none for a while.
///
/// Belongs to one thread with an event loop, the main thread; the values of the work come back
/// there. Destroying the pool asks running work to stop and waits for it no longer than `patience`,
/// so work may refer only to what it owns, and looks at its stop token where it can take long.
class WorkerPool {
public:
  /// How long destroying the pool waits for work that was asked to stop.
  static constexpr std::chrono::milliseconds patience{250};

  /// Begins a thread that does the work; false when there is none to be had.
  using Starter = std::function<bool(std::function<void()> work)>;

  explicit WorkerPool(int threads = 2);
  WorkerPool(int threads, Starter starter);
  WorkerPool(const WorkerPool &) = delete;
  WorkerPool &operator=(const WorkerPool &) = delete;
  ~WorkerPool();

  /// What a copy of `work` returned on one of the threads; nothing when the pool is destroyed
  /// before, or when there is no thread to be had. A coroutine that outlives its owner must return
  /// at once then. Work must not throw.
  ///
  ///     const auto work = [path](const std::stop_token &stop) { return read(path, stop); };
  ///     const auto value = co_await pool.run(work);
  ///
  /// The work has a name, and is taken by reference to insist on it: of a temporary with captures
  /// within an awaited expression, GCC 12 destroys the captures twice.
  template <std::invocable<std::stop_token> Work> [[nodiscard]] auto run(Work &work) {
    return runCopy<std::remove_const_t<Work>>(work);
  }

private:
  template <typename Work>
  auto runCopy(Work work)
      -> QCoro::Task<std::optional<std::invoke_result_t<Work &, std::stop_token>>> {
    using Value = std::invoke_result_t<Work &, std::stop_token>;
    const auto value = std::make_shared<std::optional<Value>>();
    const Done done(*this, [value, work = std::move(work)](const std::stop_token &stop) mutable {
      value->emplace(work(stop));
    });
    const bool isDone = co_await done;
    co_return isDone ? std::move(*value) : std::nullopt;
  }

  using Job = std::function<void(std::stop_token)>;
  struct Waiting;

  /// Suspends a coroutine until the job is done (true) or will never be (false).
  class Done {
  public:
    Done(WorkerPool &pool, Job job);
    [[nodiscard]] static bool await_ready() noexcept { return false; }
    [[nodiscard]] bool await_suspend(std::coroutine_handle<> coroutine) const;
    [[nodiscard]] bool await_resume() const noexcept;

  private:
    // Shared by the copies that GCC 12 makes of an awaiter.
    std::shared_ptr<Waiting> m_waiting;
  };

  struct Threads;
  struct Waiters;
  std::shared_ptr<Threads> m_threads;
  std::unique_ptr<Waiters> m_waiters;
};

} // namespace morvo
