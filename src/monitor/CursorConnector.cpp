#include "monitor/CursorConnector.h"

#include "monitor/ClaudeStyleHookMerger.h"

#include <utility>

namespace morvo {
namespace {

constexpr const char *versionKey = "version";
constexpr int fileVersion = 1;

} // namespace

CursorConnector::CursorConnector(HookContext context)
    : HookFileConnector(std::move(context),
                        {.id = QStringLiteral("cursor"),
                         .name = QStringLiteral("Cursor"),
                         .relativeFile = QStringLiteral(".cursor/hooks.json"),
                         .overrideVariable = QStringLiteral("MORVO_CURSOR_HOOKS_PATH"),
                         .events = {QStringLiteral("stop"), QStringLiteral("Stop"),
                                    QStringLiteral("sessionEnd"), QStringLiteral("SessionEnd")},
                         .stopKeys = {QStringLiteral("stop"), QStringLiteral("Stop")}}) {}

nlohmann::json CursorConnector::withHooksAdded(nlohmann::json settings) const {
  std::vector<ClaudeStyleHookMerger::Entry> entries;
  for (const QString &event : events()) {
    entries.push_back({event, {{"command", command().toStdString()}}});
  }
  if (!settings.contains(versionKey)) {
    settings[versionKey] = fileVersion;
  }
  return ClaudeStyleHookMerger::withEntriesAdded(std::move(settings), entries, command());
}

} // namespace morvo
