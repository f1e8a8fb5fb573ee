#include "usage/ClaudeCLIProbe.h"

#include "usage/ClaudeUsageTextParser.h"
#include "usage/ProbeCLI.h"

#include <utility>

namespace morvo {
namespace {

const QString command = QStringLiteral("claude");
constexpr auto timeout = std::chrono::seconds(18);

/// With this variable the command would answer for the token and not for the user's stored login.
const QString tokenVariable = QStringLiteral("CLAUDE_CODE_OAUTH_TOKEN");

} // namespace

ClaudeCLIProbe::ClaudeCLIProbe(ProbeContext context)
    : m_context(std::move(context)),
      m_locating(*m_context.pool, *m_context.scheduler, ProbeContext::patience) {}

QString ClaudeCLIProbe::providerId() const { return QStringLiteral("claude"); }

bool ClaudeCLIProbe::isAvailable() const {
  return ProbeCLI::locate(command, m_context.environment, m_context.home).has_value();
}

QCoro::Task<std::optional<LiveRateLimit>> ClaudeCLIProbe::probe(std::stop_token stop) {
  const ProbeContext context = m_context;
  if (!ProbeCLI::enabled(context.environment)) {
    co_return std::nullopt;
  }
  const auto look = [context](const std::stop_token &) {
    return ProbeCLI::locate(command, context.environment, context.home);
  };
  const auto located = co_await m_locating.run(look);
  if (stop.stop_requested() || !located || !*located) {
    co_return std::nullopt;
  }
  const ProbeCLI::Run run{
      .executable = **located,
      .arguments = {QStringLiteral("/usage"), QStringLiteral("--allowed-tools"), QString()},
      .timeout = timeout,
      .environment = context.environment.without(tokenVariable)};
  const auto text = co_await ProbeCLI::run(*context.scheduler, run, stop);
  if (!text) {
    co_return std::nullopt;
  }
  // A megabyte of terminal sequences takes a while to read.
  const auto read = [text = *text](const std::stop_token &) {
    return ClaudeUsageTextParser::parseUsedPercents(text);
  };
  const auto used = co_await context.pool->run(read);
  if (stop.stop_requested() || !used || !used->session) {
    co_return std::nullopt;
  }
  co_return LiveRateLimit{.primaryPct = static_cast<double>(*used->session),
                          .weeklyPct = static_cast<double>(used->weekly.value_or(0)),
                          .primaryResetsAt = std::nullopt,
                          .weeklyResetsAt = std::nullopt,
                          .plan = QStringLiteral("claude-cli")};
}

} // namespace morvo
