#include "monitor/ActConnector.h"

#include "base/AtomicFile.h"
#include "monitor/AgentSettings.h"
#include "monitor/ClaudeConnector.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/HookScript.h"
#include "monitor/SettingsLock.h"
#include "pet/PetFiles.h"
#include "platform/MorvoHome.h"

#include <utility>

namespace morvo {
namespace {

const QString toolEvent = QStringLiteral("PreToolUse");
const QString sourceName = QStringLiteral("claude");
constexpr const char *toolsThatChange = "Bash|Write|Edit|MultiEdit|NotebookEdit";
constexpr qsizetype longestId = 64;
constexpr const char *allowText = R"({"decision":"allow"})";
constexpr const char *denyText = R"({"decision":"deny"})";
/// Nobody needs an answer after a power failure, and the click must not wait for the disk.
constexpr AtomicFile::Options decisionOptions{
    .mode = 0600, .directoryMode = 0700, .durable = false, .followLinks = false};

bool isPlainId(const QString &id) {
  return PetFiles::isPlainName(id) && id.toUtf8().size() <= longestId;
}

} // namespace

ActConnector::ActConnector(HookContext context) : m_context(std::move(context)) {}

QString ActConnector::command() const {
  return HookScript::command(MorvoHome::permissionScript(m_context.home), sourceName);
}

nlohmann::json ActConnector::added(nlohmann::json settings) const {
  auto group = ClaudeStyleHookMerger::group(ClaudeStyleHookMerger::commandHook(command()));
  group["matcher"] = toolsThatChange;
  return ClaudeStyleHookMerger::withEntriesAdded(std::move(settings),
                                                 {{toolEvent, std::move(group)}}, command());
}

nlohmann::json ActConnector::removed(nlohmann::json settings) const {
  return ClaudeStyleHookMerger::withRemoved(std::move(settings), {toolEvent}, command());
}

bool ActConnector::isEntered(const nlohmann::json &settings) const {
  return ClaudeStyleHookMerger::isConnected(settings, {toolEvent}, command());
}

std::expected<void, HookError> ActConnector::setConnected(bool on) {
  if (on) {
    if (auto installed = HookScript::install(m_context); !installed) {
      return std::unexpected(installed.error());
    }
  }
  const SettingsLock lock(m_context.home);
  return AgentSettings::change(*m_context.files, ClaudeConnector(m_context).settingsURL(),
                               [this, on](nlohmann::json settings) {
                                 return on ? added(std::move(settings))
                                           : removed(std::move(settings));
                               });
}

void ActConnector::decide(const QString &id, bool allow) const {
  if (!isPlainId(id)) {
    return;
  }
  const QString path = MorvoHome::decisions(m_context.home) + QStringLiteral("/%1.json").arg(id);
  static_cast<void>(
      AtomicFile::write(*m_context.files, path, allow ? allowText : denyText, decisionOptions));
}

} // namespace morvo
