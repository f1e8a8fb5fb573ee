#pragma once

#include "base/Scheduler.h"
#include "support/ManualClock.h"

#include <list>

namespace morvo::test {

/// A scheduler whose time passes when the test says so. It moves the clock it was given along.
class ManualScheduler final : public Scheduler {
public:
  explicit ManualScheduler(ManualClock &clock) : m_clock(&clock) {}

  [[nodiscard]] Timer after(Duration delay, std::function<void()> work) override;
  [[nodiscard]] Timer every(Duration period, std::function<void()> work) override;

  /// Lets that much time pass: runs what falls due, in order of time, then of scheduling; the
  /// clock shows the due time during each call.
  void advance(Duration by);
  /// Runs what is due now, without letting time pass.
  void runDue() { advance(Duration::zero()); }
  /// How many callbacks are still to come.
  [[nodiscard]] std::size_t pending() const;
  /// When the next callback is due, from now; a negative value when there is none.
  [[nodiscard]] Duration untilNext() const;

  struct Entry {
    Instant due;
    Duration period; ///< Zero for a single shot.
    std::shared_ptr<std::function<void()>> work;
    bool active = true;
  };

private:
  Timer schedule(Duration delay, Duration period, std::function<void()> work);

  ManualClock *m_clock;
  std::list<std::shared_ptr<Entry>> m_entries;
};

} // namespace morvo::test
