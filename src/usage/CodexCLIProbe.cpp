#include "usage/CodexCLIProbe.h"

#include "usage/ProbeCLI.h"

#include <utility>

namespace morvo {
namespace {

const QString command = QStringLiteral("codex");

/// A log that was being replaced at the first look is perhaps there at the second.
std::optional<LiveRateLimit> read(const ProbeContext &context, const std::stop_token &stop) {
  auto limit = context.codex->latest(stop);
  const bool looksAgain = !limit && ProbeCLI::enabled(context.environment) &&
                          ProbeCLI::locate(command, context.environment, context.home);
  return looksAgain ? context.codex->latest(stop) : limit;
}

} // namespace

CodexCLIProbe::CodexCLIProbe(ProbeContext context)
    : m_context(std::move(context)),
      m_reading(*m_context.pool, *m_context.scheduler, ProbeContext::patience) {}

QString CodexCLIProbe::providerId() const { return QStringLiteral("codex"); }

bool CodexCLIProbe::isAvailable() const {
  return ProbeCLI::locate(command, m_context.environment, m_context.home).has_value();
}

QCoro::Task<std::optional<LiveRateLimit>> CodexCLIProbe::probe(std::stop_token stop) {
  const auto look = [context = m_context](const std::stop_token &end) {
    return read(context, end);
  };
  const auto limit = co_await m_reading.run(look);
  co_return stop.stop_requested() || !limit ? std::nullopt : *limit;
}

} // namespace morvo
