#include "monitor/AgentConnectors.h"

#include "monitor/ClaudeConnector.h"
#include "monitor/CodexConnector.h"
#include "monitor/CursorConnector.h"
#include "monitor/GeminiConnector.h"

namespace morvo::AgentConnectors {

std::vector<std::unique_ptr<AgentConnector>> all(const HookContext &context) {
  std::vector<std::unique_ptr<AgentConnector>> connectors;
  connectors.push_back(std::make_unique<ClaudeConnector>(context));
  connectors.push_back(std::make_unique<CodexConnector>(context));
  connectors.push_back(std::make_unique<GeminiConnector>(context));
  connectors.push_back(std::make_unique<CursorConnector>(context));
  return connectors;
}

} // namespace morvo::AgentConnectors
