#pragma once

#include "usage/UsageSnapshot.h"

#include <QCoroTask>

#include <vector>

namespace morvo {

/// Finds the agents on this machine and what they burned. Main thread; the reading itself happens
/// off it. After the source's end a coroutine that waits for it goes on with an empty value.
class UsageSource {
public:
  virtual ~UsageSource() = default;

  /// Reads the agents' logs and asks for their official figures. What cannot be read is left out.
  [[nodiscard]] virtual QCoro::Task<UsageSnapshot> capture() = 0;
  /// The agents that are there, without figures and without reading any of their files.
  [[nodiscard]] virtual QCoro::Task<std::vector<DetectedAgent>> present() = 0;
};

} // namespace morvo
