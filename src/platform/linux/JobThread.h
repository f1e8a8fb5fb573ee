#pragma once

#include <functional>
#include <memory>

namespace morvo {

/// A thread that does jobs one after the other. It is never waited for unless asked: destroying the
/// object drops the jobs that have not begun and lets a running one end by itself, even if that
/// takes for ever. So a job may refer only to what it owns.
class JobThread {
public:
  JobThread();
  JobThread(const JobThread &) = delete;
  JobThread &operator=(const JobThread &) = delete;
  ~JobThread();

  /// Thread-safe.
  void post(std::function<void()> job);
  /// Waits until all jobs posted so far are done.
  void drain();

private:
  struct State;
  static void run(const std::shared_ptr<State> &state);

  std::shared_ptr<State> m_state;
};

} // namespace morvo
