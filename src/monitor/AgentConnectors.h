#pragma once

#include "monitor/AgentConnector.h"
#include "monitor/HookContext.h"

#include <memory>
#include <vector>

/// The agents that can be connected.
namespace morvo::AgentConnectors {

/// One connector an agent: claude, codex, gemini, cursor.
[[nodiscard]] std::vector<std::unique_ptr<AgentConnector>> all(const HookContext &context);

} // namespace morvo::AgentConnectors
