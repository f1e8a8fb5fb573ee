#pragma once

#include "monitor/FleetSession.h"

#include <QCoroTask>

#include <vector>

namespace morvo {

/// Tells which coding sessions are alive. Main thread; the looking itself happens off it.
class FleetSource {
public:
  virtual ~FleetSource() = default;

  [[nodiscard]] virtual QCoro::Task<std::vector<FleetSession>> scan() = 0;
};

} // namespace morvo
