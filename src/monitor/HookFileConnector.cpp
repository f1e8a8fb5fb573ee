#include "monitor/HookFileConnector.h"

#include "monitor/AgentSettings.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/HookScript.h"
#include "platform/MorvoHome.h"

#include <QDir>

#include <utility>

namespace morvo {

HookFileConnector::HookFileConnector(HookContext context, Agent agent)
    : m_context(std::move(context)), m_agent(std::move(agent)) {}

QString HookFileConnector::pathOf(const QString &relativeFile,
                                  const QString &overrideVariable) const {
  const auto named = m_context.environment.nonEmpty(overrideVariable);
  return named ? QDir::current().absoluteFilePath(*named) : m_context.home.file(relativeFile);
}

QString HookFileConnector::file() const {
  return pathOf(m_agent.relativeFile, m_agent.overrideVariable);
}

QString HookFileConnector::command() const {
  return HookScript::command(MorvoHome::hookScript(m_context.home), m_agent.id);
}

std::expected<void, HookError> HookFileConnector::connect() {
  if (auto installed = HookScript::install(m_context); !installed) {
    return std::unexpected(installed.error());
  }
  auto document = AgentSettings::read(*m_context.files, file());
  if (!document) {
    return std::unexpected(document.error());
  }
  if (auto prepared = prepare(); !prepared) {
    return prepared;
  }
  return AgentSettings::write(*m_context.files, file(), withHooksAdded(document->object));
}

std::expected<void, HookError> HookFileConnector::disconnect() {
  auto document = AgentSettings::read(*m_context.files, file());
  if (!document) {
    return std::unexpected(document.error());
  }
  return AgentSettings::write(*m_context.files, file(), withHooksRemoved(document->object));
}

bool HookFileConnector::isConnected() const {
  const auto document = AgentSettings::read(*m_context.files, file());
  return document &&
         ClaudeStyleHookMerger::isConnected(document->object, m_agent.stopKeys, command());
}

nlohmann::json HookFileConnector::withHooksRemoved(nlohmann::json settings) const {
  return ClaudeStyleHookMerger::withRemoved(std::move(settings), m_agent.events, command());
}

QStringList HookFileConnector::missingEvents(const nlohmann::json &settings) const {
  QStringList missing;
  for (const QString &event : m_agent.events) {
    if (!ClaudeStyleHookMerger::isConnected(settings, {event}, command())) {
      missing << event;
    }
  }
  return missing;
}

QStringList HookFileConnector::obstacles() const {
  const auto document = AgentSettings::read(*m_context.files, file());
  if (!document) {
    return {document.error().message()};
  }
  QStringList found = HookScript::interpreterObstacles(m_context);
  if (document->replacesForeignContent) {
    found << QStringLiteral("%1 不是 JSON 对象，连接会用新内容替换它").arg(file());
  }
  const QStringList missing = missingEvents(document->object);
  const bool entered = missing.size() < m_agent.events.size();
  if (entered) {
    found << HookScript::scriptObstacles(m_context);
    if (!missing.isEmpty()) {
      found << QStringLiteral("%1 缺少这些事件的钩子：%2，请重新连接")
                   .arg(file(), missing.join(QStringLiteral("、")));
    }
  }
  return found + furtherObstacles(entered);
}

QStringList HookFileConnector::furtherObstacles([[maybe_unused]] bool entered) const { return {}; }

} // namespace morvo
