#include "monitor/ClaudeConnector.h"

#include "monitor/ClaudeStyleHookMerger.h"

#include <utility>

namespace morvo {

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

} // namespace morvo
