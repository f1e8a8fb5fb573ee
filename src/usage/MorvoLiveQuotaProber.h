#pragma once

#include "base/Clock.h"
#include "base/SharedWork.h"
#include "usage/LiveQuotaProbing.h"
#include "usage/ProbeContext.h"

#include <QHash>

#include <map>
#include <memory>
#include <stop_token>
#include <vector>

namespace morvo {

/// How much of its plan each agent says is used, from the most trusted source that tells: Codex's
/// own logs, then the agents' commands, then `caut`. No failure is ever reported: an agent just has
/// no figure.
///
/// Main thread, which it never holds up. Destroying it kills the commands that run.
class MorvoLiveQuotaProber {
public:
  using Limits = QHash<QString, LiveRateLimit>;

  /// For so long a command's figures are not asked for again.
  static constexpr Duration cacheLife = std::chrono::seconds(150);

  /// `clock` must outlive the prober, as must what `context` points to.
  MorvoLiveQuotaProber(const Clock &clock, const ProbeContext &context);
  MorvoLiveQuotaProber(const MorvoLiveQuotaProber &) = delete;
  MorvoLiveQuotaProber &operator=(const MorvoLiveQuotaProber &) = delete;
  ~MorvoLiveQuotaProber();

  /// The figures by agent. Takes up to 18 seconds, the commands running side by side, and longer by
  /// `ProbeContext::patience` at each step for which a disk does not answer; two calls that overlap
  /// may both run them. Empty when the prober was destroyed in between.
  [[nodiscard]] QCoro::Task<Limits> liveMap(bool includeCaut);

private:
  struct Cached {
    LiveRateLimit limit;
    Instant at;
  };

  [[nodiscard]] QCoro::Task<std::optional<LiveRateLimit>> codexLogs(std::stop_token stop);
  [[nodiscard]] QCoro::Task<std::optional<LiveRateLimit>>
  cachedOrProbed(std::shared_ptr<LiveQuotaProbing> probe, std::stop_token stop);
  [[nodiscard]] QCoro::Task<Limits> caut(std::stop_token stop);

  const Clock *m_clock;
  ProbeContext m_context;
  /// In the order of trust. Shared with the pool, which may look for a command a moment longer.
  std::vector<std::shared_ptr<LiveQuotaProbing>> m_probes;
  QHash<QString, Cached> m_cache;
  SharedWork<std::optional<LiveRateLimit>> m_codexLogs;
  /// Whether the probes' commands are there.
  std::map<QString, SharedWork<bool>> m_looks;
  SharedWork<std::optional<QString>> m_cautLook;
  std::stop_source m_stop;
};

} // namespace morvo
