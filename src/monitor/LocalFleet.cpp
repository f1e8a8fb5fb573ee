#include "monitor/LocalFleet.h"

#include "monitor/FleetScanner.h"

#include <utility>

namespace morvo {

LocalFleet::LocalFleet(HomeFolder home, const Clock &clock, WorkerPool &workers)
    : m_home(std::move(home)), m_clock(&clock), m_workers(&workers) {}

QCoro::Task<std::vector<FleetSession>> LocalFleet::scan() {
  // Named, since GCC 12 destroys a lambda within an awaited expression twice.
  const auto look = [home = m_home, now = m_clock->now()](const std::stop_token &stop) {
    return FleetScanner::scan(home, now, stop);
  };
  const auto found = co_await m_workers->run(look);
  co_return found.value_or(std::vector<FleetSession>());
}

} // namespace morvo
