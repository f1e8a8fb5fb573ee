#pragma once

#include "usage/GenericUsageReader.h"
#include "usage/SourceAdapter.h"
#include "usage/UsageReader.h"

namespace morvo {

/// Knows which reader understands which agent's logs. Keep one for the life of the process: its
/// readers remember what they have read.
///
/// Blocks while it reads, so not for the main thread. Thread-safe.
class SourceUsageDispatch {
public:
  /// `clock` must outlive it.
  SourceUsageDispatch(const HomeFolder &home, const Clock &clock);

  /// What the agent burned since; nothing for an agent whose logs do not tell. Incomplete when
  /// `stop` was requested.
  [[nodiscard]] TokenEvents events(const SourceAdapter &adapter, double sinceHours,
                                   const std::stop_token &stop = {});

private:
  UsageReader m_usage;
  GenericUsageReader m_generic;
};

} // namespace morvo
