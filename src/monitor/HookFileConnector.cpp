#include "monitor/HookFileConnector.h"

#include "monitor/AgentSettings.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/HookScript.h"
#include "monitor/SettingsLock.h"
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
  const SettingsLock lock(m_context.home);
  if (const auto document = AgentSettings::read(*m_context.files, file()); !document) {
    return std::unexpected(document.error());
  }
  if (auto prepared = prepare(); !prepared) {
    return prepared;
  }
  return AgentSettings::change(*m_context.files, file(), [this](nlohmann::json settings) {
    return withHooksAdded(std::move(settings));
  });
}

std::expected<void, HookError> HookFileConnector::disconnect() {
  const SettingsLock lock(m_context.home);
  return AgentSettings::change(*m_context.files, file(), [this](nlohmann::json settings) {
    return withHooksRemoved(std::move(settings));
  });
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
  if (document->losesComments) {
    found << QStringLiteral("%1 里有注释，连接或断开会保留所有设置，但去掉注释").arg(file());
  }
  const QStringList missing = missingEvents(document->object);
  const bool entered = missing.size() < m_agent.events.size();
  if (entered) {
    found << HookScript::scriptObstacles(m_context) << HookScript::inboxObstacles(m_context);
    if (!missing.isEmpty()) {
      found << QStringLiteral("%1 缺少这些事件的钩子：%2，请重新连接")
                   .arg(file(), missing.join(QStringLiteral("、")));
    }
  }
  return found + furtherObstacles(document->object, entered);
}

QStringList HookFileConnector::furtherObstacles([[maybe_unused]] const nlohmann::json &settings,
                                                [[maybe_unused]] bool entered) const {
  return {};
}

} // namespace morvo
