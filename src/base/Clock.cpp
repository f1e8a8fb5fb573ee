#include "base/Clock.h"

#include <ctime>

namespace morvo {

WallTime SystemClock::now() const {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

Instant SystemClock::instant() const {
  // CLOCK_BOOTTIME counts the time a laptop sleeps; CLOCK_MONOTONIC does not.
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return Instant(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace morvo
