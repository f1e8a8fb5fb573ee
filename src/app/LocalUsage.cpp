#include "app/LocalUsage.h"

#include "usage/LocalUsageSource.h"
#include "usage/SourceUsageDispatch.h"

namespace morvo::LocalUsage {
namespace {

/// The log readers with the clock they work by, which may be needed a moment longer than the
/// program's own.
struct Logs {
  explicit Logs(const HomeFolder &home) : dispatch(home, clock) {}

  SystemClock clock;
  SourceUsageDispatch dispatch;
};

} // namespace

std::unique_ptr<UsageSource> source(const HookContext &context, const Clock &clock,
                                    Scheduler &scheduler, WorkerPool &pool) {
  const auto logs = std::make_shared<Logs>(context.home);
  return std::make_unique<LocalUsageSource>(
      clock,
      ProbeContext{.home = context.home,
                   .environment = context.environment,
                   .scheduler = &scheduler,
                   .pool = &pool,
                   .codex = std::make_shared<CodexUsageReader>(context.home)},
      [logs](const SourceAdapter &agent, double hours, const std::stop_token &stop) {
        return logs->dispatch.events(agent, hours, stop);
      });
}

} // namespace morvo::LocalUsage
