#pragma once

#include "base/Environment.h"
#include "base/Scheduler.h"
#include "base/WorkerPool.h"
#include "platform/HomeFolder.h"
#include "usage/CodexUsageReader.h"

#include <memory>

namespace morvo {

/// What a probe works with. The pointers must outlive it.
struct ProbeContext {
  /// No probe waits for longer for a disk on which it looks for its command or reads its logs.
  static constexpr Duration patience = std::chrono::seconds(10);

  HomeFolder home;
  Environment environment;
  Scheduler *scheduler = nullptr;
  WorkerPool *pool = nullptr;
  /// Shared with the pool, which may read a moment longer.
  std::shared_ptr<CodexUsageReader> codex;
};

} // namespace morvo
