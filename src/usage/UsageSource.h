#pragma once

#include "usage/UsageSnapshot.h"

#include <QCoroTask>

#include <optional>
#include <vector>

namespace morvo {

/// Finds the agents on this machine and what they burned. Main thread; the reading itself happens
/// off it. Nothing comes where the disk does not answer in time, and after the source's end: what
/// is known already stands.
class UsageSource {
public:
  virtual ~UsageSource() = default;

  /// Reads the agents' logs and asks for their official figures. What cannot be read is left out.
  [[nodiscard]] virtual QCoro::Task<std::optional<UsageSnapshot>> capture() = 0;
  /// The agents that are there, without figures and without reading any of their files.
  [[nodiscard]] virtual QCoro::Task<std::optional<std::vector<DetectedAgent>>> present() = 0;
};

} // namespace morvo
