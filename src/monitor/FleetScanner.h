#pragma once

#include "base/Time.h"
#include "monitor/FleetSession.h"
#include "platform/HomeFolder.h"

#include <stop_token>
#include <vector>

/// Tells which coding sessions are alive by the logs that Claude Code and Codex write: by a log's
/// age and its last lines, without any hook.
namespace morvo::FleetScanner {

/// The sessions of the last 15 minutes whose project is known, those at work first, then the
/// youngest. Looks at 80 files of each agent at most, and at the last 64 KiB of each. Any thread.
/// What cannot be read is left out, and so is what comes after a requested stop.
[[nodiscard]] std::vector<FleetSession> scan(const HomeFolder &home, WallTime now,
                                             const std::stop_token &stop = {});

} // namespace morvo::FleetScanner
