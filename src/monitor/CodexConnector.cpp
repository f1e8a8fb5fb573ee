#include "monitor/CodexConnector.h"

#include "base/AtomicFile.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/CodexConfig.h"

#include <cerrno>
#include <utility>

namespace morvo {
namespace {

const QString permissionEvent = QStringLiteral("PermissionRequest");
constexpr const char *everyTool = "*";
constexpr int timeoutSeconds = 5;
constexpr const char *statusMessage = "Morvo 正在同步 Codex 事件";

} // namespace

CodexConnector::CodexConnector(HookContext context)
    : HookFileConnector(
          std::move(context),
          {.id = QStringLiteral("codex"),
           .name = QStringLiteral("Codex"),
           .relativeFile = QStringLiteral(".codex/hooks.json"),
           .overrideVariable = QStringLiteral("MORVO_CODEX_HOOKS_PATH"),
           .events = {QStringLiteral("Stop"), QStringLiteral("SubagentStop"), permissionEvent},
           .stopKeys = {QStringLiteral("Stop")}}) {}

QString CodexConnector::configURL() const {
  return pathOf(QStringLiteral(".codex/config.toml"), QStringLiteral("MORVO_CODEX_CONFIG_PATH"));
}

nlohmann::json CodexConnector::withHooksAdded(nlohmann::json settings) const {
  auto hook = ClaudeStyleHookMerger::commandHook(command());
  hook["timeout"] = timeoutSeconds;
  hook["statusMessage"] = statusMessage;
  std::vector<ClaudeStyleHookMerger::Entry> entries;
  for (const QString &event : events()) {
    auto group = ClaudeStyleHookMerger::group(hook);
    if (event == permissionEvent) {
      group["matcher"] = everyTool;
    }
    entries.push_back({event, std::move(group)});
  }
  return ClaudeStyleHookMerger::withEntriesAdded(std::move(settings), entries, command());
}

bool CodexConnector::isConnected() const {
  const auto toml = config();
  return toml && CodexConfig::hooksFeatureEnabled(*toml) && HookFileConnector::isConnected();
}

std::expected<QByteArray, HookError> CodexConnector::config() const {
  auto text = context().files->read(configURL());
  if (text || text.error().code == ENOENT) {
    return text.value_or(QByteArray());
  }
  return std::unexpected(HookError{HookError::Kind::fileUnreadable, configURL(), text.error()});
}

std::expected<void, HookError> CodexConnector::enableHooksFeature() {
  const auto before = config();
  if (!before) {
    return std::unexpected(before.error());
  }
  const QByteArray after = CodexConfig::withHooksFeatureEnabled(*before);
  if (!CodexConfig::isSafeChange(*before, after)) {
    return std::unexpected(HookError{HookError::Kind::configConflict, configURL(), {}});
  }
  if (auto written = AtomicFile::write(*context().files, configURL(), after); !written) {
    return std::unexpected(
        HookError{HookError::Kind::fileNotWritten, configURL(), written.error()});
  }
  return {};
}

QStringList CodexConnector::furtherObstacles(bool entered) const {
  const auto toml = config();
  if (!toml) {
    return {toml.error().message()};
  }
  if (!entered) {
    return {};
  }
  QStringList found;
  if (!CodexConfig::hooksFeatureEnabled(*toml)) {
    found << QStringLiteral("%1 的 [features] 里没有 hooks = true，Codex 不会运行钩子")
                 .arg(configURL());
  }
  // Codex keeps the trust in a form of its own that may change, so it is told, not tested.
  found << QStringLiteral(
      "Codex 只运行你信任过的钩子：请在 codex 提示「Hooks need review」时信任一次"
      "（是否已信任，这里查不到）");
  return found;
}

} // namespace morvo
