#include "monitor/CodexConnector.h"

#include "base/AtomicFile.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/CodexConfig.h"
#include "monitor/SettingsLock.h"
#include "monitor/SharedFile.h"

#include <string_view>
#include <utility>

namespace morvo {
namespace {

const QString permissionEvent = QStringLiteral("PermissionRequest");
constexpr const char *everyTool = "*";
/// The only key that Codex accepts at the top of its hooks file.
constexpr std::string_view hooksKey = "hooks";
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
  const auto text = AtomicFile::present(*context().files, configURL());
  if (!text) {
    return std::unexpected(HookError{HookError::Kind::fileUnreadable, configURL(), text.error()});
  }
  return text->value_or(QByteArray());
}

std::expected<void, HookError> CodexConnector::enableHooksFeature() {
  const SettingsLock lock(context().home);
  return switchHooksOn();
}

std::expected<void, HookError> CodexConnector::switchHooksOn() {
  using Content = std::expected<QByteArray, HookError>;
  return SharedFile::change(
      *context().files, configURL(), [this](const QByteArray &before) -> Content {
        QByteArray after = CodexConfig::withHooksFeatureEnabled(before);
        if (!CodexConfig::isSafeChange(before, after)) {
          return std::unexpected(HookError{HookError::Kind::configConflict, configURL(), {}});
        }
        return after;
      });
}

QStringList CodexConnector::switchObstacles(const QByteArray &toml, bool entered) const {
  const auto read = CodexConfig::byToml(toml);
  if (read == CodexConfig::Switch::notUnderstood) {
    return {QStringLiteral("%1 不是看得懂的 TOML，Codex 可能起不来，也就不会运行钩子")
                .arg(configURL())};
  }
  if (!entered) {
    return {};
  }
  if (!CodexConfig::hooksFeatureEnabled(toml)) {
    return {QStringLiteral("%1 的 [features] 里没有 hooks = true，Codex 不会运行钩子")
                .arg(configURL())};
  }
  if (read == CodexConfig::Switch::off) {
    return {QStringLiteral("%1 里那行 hooks = true 按 TOML 不算 features.hooks，Codex 不会运行钩子")
                .arg(configURL())};
  }
  return {};
}

QStringList CodexConnector::furtherObstacles(const nlohmann::json &settings, bool entered) const {
  const auto toml = config();
  if (!toml) {
    return {toml.error().message()};
  }
  QStringList found = switchObstacles(*toml, entered);
  QStringList unknown;
  for (const auto &[key, value] : settings.items()) {
    if (key != hooksKey) {
      unknown << QString::fromStdString(key);
    }
  }
  if (!unknown.isEmpty()) {
    found << QStringLiteral("%1 里有 Codex 不认识的键：%2，Codex 会拒绝整个文件")
                 .arg(file(), unknown.join(QStringLiteral("、")));
  }
  if (entered) {
    // Codex keeps the trust in a form of its own that may change, so it is told, not tested.
    found << QStringLiteral(
        "Codex 只运行你信任过的钩子：请在 codex 提示「Hooks need review」时信任一次"
        "（是否已信任，这里查不到）");
  }
  return found;
}

} // namespace morvo
