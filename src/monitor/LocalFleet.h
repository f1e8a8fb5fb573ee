#pragma once

#include "base/Clock.h"
#include "base/WorkerPool.h"
#include "monitor/FleetSource.h"
#include "platform/HomeFolder.h"

namespace morvo {

/// The sessions on this machine, looked for on threads of low priority.
class LocalFleet final : public FleetSource {
public:
  /// `clock` must outlive the object, `workers` every scan that it began.
  LocalFleet(HomeFolder home, const Clock &clock, WorkerPool &workers);

  /// Empty when the workers are gone before it is done.
  [[nodiscard]] QCoro::Task<std::vector<FleetSession>> scan() override;

private:
  HomeFolder m_home;
  const Clock *m_clock;
  WorkerPool *m_workers;
};

} // namespace morvo
