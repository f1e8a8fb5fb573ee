#include "usage/AgentScanner.h"

#include "usage/SourceRegistry.h"
#include "usage/TokenCount.h"

#include <utility>

namespace morvo::AgentScanner {
namespace {

/// How far back events count as those of the week.
constexpr double weekHours = 168;
constexpr auto window = std::chrono::hours(5);

std::optional<AgentAccount> accountOf(const QString &id, AccountReader &accounts) {
  if (id == u"claude") {
    return accounts.claude();
  }
  return id == u"codex" ? accounts.codex() : std::nullopt;
}

DetectedAgent agentOf(const SourceAdapter &adapter, const HomeFolder &home) {
  return {.id = adapter.id, .name = adapter.name, .detectedPath = home.file(adapter.probeRelative)};
}

void count(const TokenEvents &events, WallTime windowStart, DetectedAgent &agent) {
  for (const TokenEvent event : events) {
    agent.weekTokens = TokenCount::sum(agent.weekTokens, event.billable);
    if (event.ts >= windowStart) {
      agent.windowTokens = TokenCount::sum(agent.windowTokens, event.billable);
      agent.cost += event.cost;
    }
  }
}

} // namespace

UsageSnapshot snapshot(const HomeFolder &home, WallTime now, AccountReader &accounts,
                       const EventReader &events) {
  UsageSnapshot result;
  for (const SourceAdapter &adapter : SourceRegistry::detected(home)) {
    DetectedAgent agent = agentOf(adapter, home);
    auto burned = events(adapter, weekHours);
    count(burned, now - window, agent);
    agent.account = accountOf(adapter.id, accounts);
    result.weekTokens = TokenCount::sum(result.weekTokens, agent.weekTokens);
    if (result.events.empty()) {
      result.events = std::move(burned);
    } else {
      result.events.append(burned);
    }
    result.agents.push_back(std::move(agent));
  }
  return result;
}

UsageSnapshot withLimits(UsageSnapshot snapshot, const QHash<QString, LiveRateLimit> &limits) {
  for (DetectedAgent &agent : snapshot.agents) {
    if (const auto limit = limits.constFind(agent.id); limit != limits.constEnd()) {
      agent.liveLimit = *limit;
    }
  }
  return snapshot;
}

std::vector<DetectedAgent> present(const HomeFolder &home) {
  std::vector<DetectedAgent> agents;
  for (const SourceAdapter &adapter : SourceRegistry::detected(home)) {
    agents.push_back(agentOf(adapter, home));
  }
  return agents;
}

} // namespace morvo::AgentScanner
