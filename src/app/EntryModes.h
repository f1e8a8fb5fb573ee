#pragma once

#include "monitor/HookContext.h"

/// Environment variables that turn a launch into a one-shot job.
namespace morvo::EntryModes {

/// Runs the first mode that the environment asks for. True when one was taken: the process then
/// ends, and nothing else of the start happens. Messages go to standard error.
[[nodiscard]] bool take(const HookContext &context);

} // namespace morvo::EntryModes
