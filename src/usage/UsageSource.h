#pragma once

#include "usage/DetectedAgent.h"
#include "usage/UsageStats.h"

#include <QCoroTask>

#include <vector>

namespace morvo {

/// Finds the agents on this machine and what they burned. Main thread; the reading itself happens
/// off it.
class UsageSource {
public:
  struct Capture {
    std::vector<DetectedAgent> agents;
    UsageStats usage;
  };

  virtual ~UsageSource() = default;

  [[nodiscard]] virtual QCoro::Task<Capture> capture() = 0;
};

} // namespace morvo
