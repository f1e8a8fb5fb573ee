#pragma once

#include "base/Clock.h"
#include "base/SharedWork.h"
#include "usage/MorvoLiveQuotaProber.h"
#include "usage/SourceAdapter.h"
#include "usage/UsageSource.h"

#include <functional>
#include <memory>
#include <stop_token>

namespace morvo {

/// The agents of this machine: their logs read on the pool's threads, their commands asked
/// meanwhile. Logs that are not read in time are read on, for a later capture. Destroying it kills
/// the commands and gives up the rest.
class LocalUsageSource final : public UsageSource {
public:
  /// No capture waits for longer for the logs. Gigabytes of them are read in seconds, from a slow
  /// disk in a minute.
  static constexpr Duration patience = std::chrono::minutes(2);

  /// Gives what the agent's logs tell of the last `hours` hours, incomplete when `stop` is
  /// requested. Called on one of the pool's threads, perhaps a moment longer than the source
  /// lives.
  using LogReader = std::function<TokenEvents(const SourceAdapter &agent, double hours,
                                              const std::stop_token &stop)>;

  /// `clock` must outlive the source, as must what `context` points to.
  LocalUsageSource(const Clock &clock, const ProbeContext &context, LogReader logs);
  LocalUsageSource(const LocalUsageSource &) = delete;
  LocalUsageSource &operator=(const LocalUsageSource &) = delete;
  ~LocalUsageSource() override;

  [[nodiscard]] QCoro::Task<std::optional<UsageSnapshot>> capture() override;
  [[nodiscard]] QCoro::Task<std::optional<std::vector<DetectedAgent>>> present() override;

private:
  /// The readers of the accounts, which a scan may need a moment longer than the source lives.
  struct Accounts;

  const Clock *m_clock;
  ProbeContext m_context;
  std::shared_ptr<Accounts> m_accounts;
  LogReader m_logs;
  MorvoLiveQuotaProber m_prober;
  SharedWork<UsageSnapshot> m_reading;
  SharedWork<std::vector<DetectedAgent>> m_looking;
  std::stop_source m_stop;
};

} // namespace morvo
