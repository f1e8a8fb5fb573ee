#include "usage/MorvoLiveQuotaProber.h"

#include "usage/ClaudeCLIProbe.h"
#include "usage/CodexCLIProbe.h"
#include "usage/ProbeCLI.h"
#include "usage/QuotaProbe.h"

#include <utility>

namespace morvo {
namespace {

void addMissing(MorvoLiveQuotaProber::Limits &limits, const QString &id,
                const LiveRateLimit &limit) {
  if (!limits.contains(id)) {
    limits.insert(id, limit);
  }
}

} // namespace

MorvoLiveQuotaProber::MorvoLiveQuotaProber(const Clock &clock, const ProbeContext &context)
    : m_clock(&clock), m_context(context),
      m_probes{std::make_shared<ClaudeCLIProbe>(context), std::make_shared<CodexCLIProbe>(context)},
      m_codexLogs(*context.pool, *context.scheduler, ProbeContext::patience),
      m_cautLook(*context.pool, *context.scheduler, ProbeContext::patience) {
  for (const auto &probe : m_probes) {
    m_looks.try_emplace(probe->providerId(), *context.pool, *context.scheduler,
                        ProbeContext::patience);
  }
}

MorvoLiveQuotaProber::~MorvoLiveQuotaProber() { m_stop.request_stop(); }

// Behind each wait the prober may be gone: the token, which outlives it, tells.

QCoro::Task<MorvoLiveQuotaProber::Limits> MorvoLiveQuotaProber::liveMap(bool includeCaut) {
  const std::stop_token stop = m_stop.get_token();
  // All begin at once; what they find is put together in the order of trust.
  auto logs = codexLogs(stop);
  std::vector<std::pair<QString, QCoro::Task<std::optional<LiveRateLimit>>>> probed;
  if (ProbeCLI::enabled(m_context.environment)) {
    for (const auto &probe : m_probes) {
      probed.emplace_back(probe->providerId(), cachedOrProbed(probe, stop));
    }
  }
  auto rest = includeCaut ? caut(stop) : QCoro::Task<Limits>();

  Limits limits;
  const auto written = co_await std::move(logs);
  if (written) {
    limits.insert(QStringLiteral("codex"), *written);
  }
  for (auto &[id, task] : probed) {
    const auto found = co_await std::move(task);
    if (found) {
      addMissing(limits, id, *found);
    }
  }
  if (includeCaut) {
    const Limits others = co_await std::move(rest);
    for (auto each = others.cbegin(); each != others.cend(); ++each) {
      addMissing(limits, each.key(), each.value());
    }
  }
  co_return stop.stop_requested() ? Limits() : limits;
}

QCoro::Task<std::optional<LiveRateLimit>> MorvoLiveQuotaProber::codexLogs(std::stop_token stop) {
  const auto read = [codex = m_context.codex](const std::stop_token &end) {
    return codex->latest(end);
  };
  const auto limit = co_await m_codexLogs.run(read);
  co_return stop.stop_requested() || !limit ? std::nullopt : *limit;
}

QCoro::Task<std::optional<LiveRateLimit>>
MorvoLiveQuotaProber::cachedOrProbed(std::shared_ptr<LiveQuotaProbing> probe,
                                     std::stop_token stop) {
  const QString id = probe->providerId();
  const auto known = m_cache.constFind(id);
  if (known != m_cache.constEnd() && m_clock->instant() - known->at < cacheLife) {
    co_return known->limit;
  }
  const auto look = [probe](const std::stop_token &) { return probe->isAvailable(); };
  const auto isAvailable = co_await m_looks.at(id).run(look);
  if (stop.stop_requested() || !isAvailable.value_or(false)) {
    co_return std::nullopt;
  }
  const auto limit = co_await probe->probe(stop);
  if (stop.stop_requested() || !limit) {
    // A failure is not remembered.
    co_return std::nullopt;
  }
  m_cache.insert(id, {.limit = *limit, .at = m_clock->instant()});
  co_return limit;
}

QCoro::Task<MorvoLiveQuotaProber::Limits> MorvoLiveQuotaProber::caut(std::stop_token stop) {
  const Environment environment = m_context.environment;
  if (!QuotaProbe::cautEnabled(environment)) {
    co_return Limits();
  }
  const auto look = [environment](const std::stop_token &) {
    return QuotaProbe::findCautBinary(environment);
  };
  const auto binary = co_await m_cautLook.run(look);
  if (stop.stop_requested() || !binary || !*binary) {
    co_return Limits();
  }
  const auto records =
      co_await QuotaProbe::runCautUsage(*m_context.scheduler, **binary, environment, stop);
  co_return QuotaProbe::cautLiveMap(records);
}

} // namespace morvo
