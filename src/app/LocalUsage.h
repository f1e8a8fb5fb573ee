#pragma once

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "base/WorkerPool.h"
#include "monitor/HookContext.h"
#include "usage/UsageSource.h"

#include <memory>

/// Puts together what reads the use of this machine's agents.
namespace morvo::LocalUsage {

/// The source of the home that `context` names. The references must outlive it.
[[nodiscard]] std::unique_ptr<UsageSource> source(const HookContext &context, const Clock &clock,
                                                  Scheduler &scheduler, WorkerPool &pool);

} // namespace morvo::LocalUsage
