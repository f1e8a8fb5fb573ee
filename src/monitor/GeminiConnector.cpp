#include "monitor/GeminiConnector.h"

#include "monitor/ClaudeStyleHookMerger.h"

#include <utility>

namespace morvo {

GeminiConnector::GeminiConnector(HookContext context)
    : HookFileConnector(std::move(context),
                        {.id = QStringLiteral("gemini"),
                         .name = QStringLiteral("Gemini CLI"),
                         .relativeFile = QStringLiteral(".gemini/settings.json"),
                         .overrideVariable = QStringLiteral("MORVO_GEMINI_SETTINGS_PATH"),
                         .events = {QStringLiteral("Stop"), QStringLiteral("AfterModel"),
                                    QStringLiteral("Notification"), QStringLiteral("SessionEnd")},
                         .stopKeys = {QStringLiteral("Stop"), QStringLiteral("AfterModel")}}) {}

nlohmann::json GeminiConnector::withHooksAdded(nlohmann::json settings) const {
  return ClaudeStyleHookMerger::withAdded(std::move(settings), events(), command());
}

} // namespace morvo
