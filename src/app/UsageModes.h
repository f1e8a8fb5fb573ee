#pragma once

#include "monitor/HookContext.h"
#include "platform/Setting.h"
#include "usage/LiveRateLimit.h"
#include "usage/UsageSnapshot.h"
#include "usage/UsageStats.h"

#include <QStringList>

#include <optional>

/// The one-shot jobs that tell in a terminal what the agents burned.
namespace morvo::UsageModes {

/// One line for each agent, and one for all of them together.
[[nodiscard]] QStringList scanLines(const UsageSnapshot &snapshot, const UsageStats &stats);

/// What Codex's logs say of its rate limits, without the tag.
[[nodiscard]] QString codexLine(const std::optional<LiveRateLimit> &limit);

/// Captures once, as the running program does, and prints the lines on standard error. Runs an
/// event loop until it is done; the commands it asks have up to 18 seconds. A signal to end is
/// obeyed, and kills the commands with all they started.
void scan(const HookContext &context, const Setting &setting);

/// Prints Codex's line on standard error.
void printCodexLimit(const HomeFolder &home);

} // namespace morvo::UsageModes
