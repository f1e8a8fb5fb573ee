#pragma once

#include "base/Clock.h"
#include "usage/MorvoLiveQuotaProber.h"
#include "usage/SourceAdapter.h"
#include "usage/UsageSource.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace morvo {

/// The agents of this machine: their logs read on the pool's threads, their commands asked
/// meanwhile. Destroying it kills the commands and gives up the rest.
class LocalUsageSource final : public UsageSource {
public:
  /// Gives what the agent's logs tell of the last `hours` hours, incomplete when `stop` is
  /// requested. Called on the pool's threads, perhaps on two at once and perhaps a moment longer
  /// than the source lives.
  using LogReader = std::function<std::vector<TokenEvent>(const SourceAdapter &agent, double hours,
                                                          const std::stop_token &stop)>;

  /// `clock` must outlive the source, as must what `context` points to.
  LocalUsageSource(const Clock &clock, const ProbeContext &context, LogReader logs);
  LocalUsageSource(const LocalUsageSource &) = delete;
  LocalUsageSource &operator=(const LocalUsageSource &) = delete;
  ~LocalUsageSource() override;

  [[nodiscard]] QCoro::Task<UsageSnapshot> capture() override;
  [[nodiscard]] QCoro::Task<std::vector<DetectedAgent>> present() override;

private:
  /// The readers of the accounts, which a scan may need a moment longer than the source lives.
  struct Accounts;

  const Clock *m_clock;
  ProbeContext m_context;
  std::shared_ptr<Accounts> m_accounts;
  LogReader m_logs;
  MorvoLiveQuotaProber m_prober;
  std::stop_source m_stop;
};

} // namespace morvo
