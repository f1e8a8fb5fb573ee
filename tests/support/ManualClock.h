#pragma once

#include "base/Clock.h"

namespace morvo::test {

/// A clock that stands still until the test moves it.
class ManualClock final : public Clock {
public:
  [[nodiscard]] WallTime now() const override { return m_now; }
  [[nodiscard]] Instant instant() const override { return m_instant; }

  /// Time passes: both clocks move.
  void advance(Duration by) {
    m_instant += by;
    m_now += std::chrono::duration_cast<std::chrono::milliseconds>(by);
  }
  /// The user sets the calendar: elapsed time stays.
  void setCalendar(WallTime now) { m_now = now; }

private:
  // A Tuesday at noon, far from any edge of a day or a year.
  WallTime m_now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 10} + std::chrono::hours(12)};
  Instant m_instant{std::chrono::hours(100)};
};

} // namespace morvo::test
