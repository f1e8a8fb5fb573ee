#pragma once

#include <chrono>

namespace morvo {

/// Calendar time, for everything that is stored or shown. It jumps when the user sets the clock.
using WallTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// Elapsed time since boot, suspend included. It never jumps; use it to measure intervals.
struct ElapsedClock {
  using duration = std::chrono::nanoseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<ElapsedClock>;
  static constexpr bool is_steady = true;
};
using Instant = ElapsedClock::time_point;
using Duration = ElapsedClock::duration;

/// The duration of that many seconds, fractions included.
constexpr Duration seconds(double count) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(count));
}

/// That duration in seconds, fractions included.
constexpr double inSeconds(Duration duration) {
  return std::chrono::duration<double>(duration).count();
}

} // namespace morvo
