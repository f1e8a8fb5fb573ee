#include "app/PetStore.h"

#include "monitor/ActConnector.h"
#include "monitor/AttentionEngine.h"
#include "monitor/AttentionSnapshot.h"

#include <algorithm>

namespace morvo {
namespace {

constexpr auto recentDoneLife = std::chrono::seconds(180);
constexpr auto softConfirmLife = std::chrono::seconds(600);

/// Stands where an agent's name would, since a permission line does not name its agent.
const QString permissionAgent = QStringLiteral("权限");

bool isDetected(const std::vector<DetectedAgent> &agents, QStringView id) {
  return std::ranges::find(agents, id, &DetectedAgent::id) != agents.end();
}

} // namespace

std::expected<void, HookError> PetStore::setActConnected(bool on) const {
  return ActConnector(m_parts.hooks).setConnected(on);
}

void PetStore::decideApproval(bool allow) {
  if (const auto pending = m_pendingApproval.value()) {
    ActConnector(m_parts.hooks).decide(pending->id, allow);
  }
  m_pendingApproval = std::nullopt;
  m_softConfirm.reset();
  refreshAttention();
}

void PetStore::dropOldNews() {
  const Instant now = m_parts.clock.instant();
  if (m_recentDone && now - m_recentDone->at > recentDoneLife) {
    m_recentDone.reset();
  }
  if (m_softConfirm && now - m_softConfirm->at > softConfirmLife) {
    m_softConfirm.reset();
  }
}

AttentionSnapshot PetStore::attentionSnapshot() const {
  AttentionSnapshot snapshot{.loads = m_sourceLoads};
  // A real approval hides a soft confirmation.
  if (const auto pending = m_pendingApproval.value()) {
    snapshot.pendingConfirm = {.agent = permissionAgent,
                               .summary = pending->tool + u'：' + pending->summary};
  } else if (m_softConfirm) {
    snapshot.pendingConfirm = {.agent = m_softConfirm->agent, .summary = m_softConfirm->summary};
  }
  if (m_recentDone) {
    snapshot.recentDone = {.agent = m_recentDone->agent, .label = m_recentDone->label};
  }
  const auto &fleet = m_fleet.value();
  snapshot.runningCount =
      static_cast<int>(std::ranges::count(fleet, FleetStatus::running, &FleetSession::status));
  const auto &agents = m_detected.value();
  snapshot.claudeDetected = isDetected(agents, u"claude");
  snapshot.claudeHooked = m_claudeConnected;
  snapshot.codexDetected = isDetected(agents, u"codex");
  snapshot.codexHooked = m_codexConnected;
  snapshot.geminiDetected = isDetected(agents, u"gemini");
  snapshot.geminiHooked = m_geminiConnected;
  snapshot.cursorDetected = isDetected(agents, u"cursor");
  snapshot.cursorHooked = m_cursorConnected;
  return snapshot;
}

void PetStore::refreshAttention() {
  dropOldNews();
  const AttentionSnapshot snapshot = attentionSnapshot();
  const auto items = AttentionEngine::rank(snapshot);
  m_attentionItems = items;
  m_attentionHeadline = AttentionEngine::headline(items);
  m_attentionExplain =
      AttentionEngine::explain(items.front(), AttentionEngine::tightest(snapshot.loads));
  m_parts.body.setQuietMode(snapshot.runningCount > 0);
}

} // namespace morvo
