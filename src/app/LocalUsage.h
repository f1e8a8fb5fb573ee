#pragma once

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "base/WorkerPool.h"
#include "monitor/HookContext.h"
#include "usage/UsageSource.h"

#include <memory>

/// Puts together what reads the use of this machine's agents.
namespace morvo::LocalUsage {

/// As many threads as the source does kinds of work, so that one that hangs keeps no other waiting.
inline constexpr int threads = 8;

/// The source of the home that `context` names. The references must outlive it.
[[nodiscard]] std::unique_ptr<UsageSource> source(const HookContext &context, const Clock &clock,
                                                  Scheduler &scheduler, WorkerPool &pool);

} // namespace morvo::LocalUsage
