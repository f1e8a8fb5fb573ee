#pragma once

#include "platform/HomeFolder.h"
#include "usage/AccountReader.h"
#include "usage/LiveRateLimit.h"
#include "usage/SourceAdapter.h"
#include "usage/UsageSnapshot.h"

#include <QHash>

#include <functional>
#include <vector>

/// Turns the list of known agents into a snapshot of the machine. Reads files: not for the main
/// thread.
namespace morvo::AgentScanner {

/// Gives what the agent's logs tell of the last `hours` hours.
using EventReader = std::function<TokenEvents(const SourceAdapter &agent, double hours)>;

/// Which of the measured agents are there, what each burned and who is logged in. Sums saturate.
/// The official figures are not in it; see `withLimits`.
[[nodiscard]] UsageSnapshot snapshot(const HomeFolder &home, WallTime now, AccountReader &accounts,
                                     const EventReader &events);

/// The same agents with their official figures, given by agent.
[[nodiscard]] UsageSnapshot withLimits(UsageSnapshot snapshot,
                                       const QHash<QString, LiveRateLimit> &limits);

/// The measured agents that are there, without figures. Reads no file.
[[nodiscard]] std::vector<DetectedAgent> present(const HomeFolder &home);

} // namespace morvo::AgentScanner
