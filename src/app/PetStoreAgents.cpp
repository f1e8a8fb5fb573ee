#include "app/PetStore.h"

#include <algorithm>

namespace morvo {
namespace {

const QString claude = QStringLiteral("claude");
const QString codex = QStringLiteral("codex");
const QString gemini = QStringLiteral("gemini");
const QString cursor = QStringLiteral("cursor");

} // namespace

AgentConnector *PetStore::connector(const QString &agentId) const {
  const auto found = std::ranges::find_if(
      m_parts.connectors, [&agentId](const auto &candidate) { return candidate->id() == agentId; });
  return found == m_parts.connectors.end() ? nullptr : found->get();
}

void PetStore::publishHookFlag(const QString &agentId, bool connected) {
  if (agentId == claude) {
    m_claudeConnected = connected;
  } else if (agentId == codex) {
    m_codexConnected = connected;
  } else if (agentId == gemini) {
    m_geminiConnected = connected;
  } else if (agentId == cursor) {
    m_cursorConnected = connected;
  }
}

void PetStore::refreshHookFlags() {
  for (const auto &candidate : m_parts.connectors) {
    publishHookFlag(candidate->id(), candidate->isConnected());
  }
}

std::expected<void, HookError> PetStore::setAgentConnected(const QString &agentId, bool on) {
  AgentConnector *agent = connector(agentId);
  if (agent == nullptr) {
    return {};
  }
  auto outcome = on ? agent->connect() : agent->disconnect();
  publishHookFlag(agentId, agent->isConnected());
  refreshAttention();
  return outcome;
}

// The panels' switches show the true state of the files, which is all there is to say of a failure.

void PetStore::setClaudeConnected(bool on) { static_cast<void>(setAgentConnected(claude, on)); }

void PetStore::setCodexConnected(bool on) { static_cast<void>(setAgentConnected(codex, on)); }

void PetStore::setGeminiConnected(bool on) { static_cast<void>(setAgentConnected(gemini, on)); }

void PetStore::setCursorConnected(bool on) { static_cast<void>(setAgentConnected(cursor, on)); }

} // namespace morvo
