#include "monitor/ClaudeConnector.h"

#include "monitor/ActConnector.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/HookScript.h"

#include <utility>

namespace morvo {
namespace {

constexpr const char *hooksOffKey = "disableAllHooks";

} // namespace

ClaudeConnector::ClaudeConnector(HookContext context)
    : HookFileConnector(std::move(context),
                        {.id = QStringLiteral("claude"),
                         .name = QStringLiteral("Claude Code"),
                         .relativeFile = QStringLiteral(".claude/settings.json"),
                         .overrideVariable = QStringLiteral("MORVO_SETTINGS_PATH"),
                         .events = {QStringLiteral("Stop"), QStringLiteral("SubagentStop"),
                                    QStringLiteral("Notification")},
                         .stopKeys = {QStringLiteral("Stop")}}) {}

nlohmann::json ClaudeConnector::withHooksAdded(nlohmann::json settings) const {
  return ClaudeStyleHookMerger::withAdded(std::move(settings), events(), command());
}

bool ClaudeConnector::groupsContainOurCommand(const nlohmann::json &groups) const {
  return ClaudeStyleHookMerger::groupsContain(groups, command());
}

QStringList ClaudeConnector::furtherObstacles(const nlohmann::json &settings,
                                              [[maybe_unused]] bool entered) const {
  QStringList found;
  if (const ActConnector act(context()); act.isEntered(settings)) {
    found << HookScript::permissionObstacles(context());
  }
  const auto hooksOff = settings.find(hooksOffKey);
  if (hooksOff != settings.end() && *hooksOff == nlohmann::json(true)) {
    found << QStringLiteral("%1 里 disableAllHooks 是 true，Claude Code 不会运行任何钩子")
                 .arg(file());
  }
  return found;
}

} // namespace morvo
