#include "usage/LocalUsageSource.h"

#include "base/SystemFileLayer.h"
#include "usage/AgentScanner.h"

#include <utility>

namespace morvo {

struct LocalUsageSource::Accounts {
  explicit Accounts(const HomeFolder &home) : reader(home, files) {}

  SystemFileLayer files;
  AccountReader reader;
};

LocalUsageSource::LocalUsageSource(const Clock &clock, const ProbeContext &context, LogReader logs)
    : m_clock(&clock), m_context(context), m_accounts(std::make_shared<Accounts>(context.home)),
      m_logs(std::move(logs)), m_prober(clock, context),
      m_reading(*context.pool, *context.scheduler, patience),
      m_looking(*context.pool, *context.scheduler, patience) {}

LocalUsageSource::~LocalUsageSource() { m_stop.request_stop(); }

QCoro::Task<std::optional<UsageSnapshot>> LocalUsageSource::capture() {
  const std::stop_token stop = m_stop.get_token();
  auto asked = m_prober.liveMap(true);
  const auto read = [home = m_context.home, now = m_clock->now(), accounts = m_accounts,
                     logs = m_logs](const std::stop_token &end) {
    return AgentScanner::snapshot(
        home, now, accounts->reader,
        [&](const SourceAdapter &agent, double hours) { return logs(agent, hours, end); });
  };
  auto counted = co_await m_reading.run(read);
  if (stop.stop_requested() || !counted) {
    co_return std::nullopt;
  }
  const auto limits = co_await std::move(asked);
  if (stop.stop_requested()) {
    co_return std::nullopt;
  }
  co_return AgentScanner::withLimits(*std::move(counted), limits);
}

QCoro::Task<std::optional<std::vector<DetectedAgent>>> LocalUsageSource::present() {
  const std::stop_token stop = m_stop.get_token();
  const auto look = [home = m_context.home](const std::stop_token &) {
    return AgentScanner::present(home);
  };
  auto agents = co_await m_looking.run(look);
  if (stop.stop_requested()) {
    co_return std::nullopt;
  }
  co_return agents;
}

} // namespace morvo
