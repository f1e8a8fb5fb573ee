#pragma once

#include "monitor/HookFileConnector.h"

namespace morvo {

/// Codex: groups under "Stop", "SubagentStop" and "PermissionRequest" in its hooks file, and the
/// feature switch in its configuration (`monitor/CodexConfig.h`), which disconnecting leaves on.
class CodexConnector final : public HookFileConnector {
public:
  explicit CodexConnector(HookContext context);

  /// `~/.codex/hooks.json`, or the path in `MORVO_CODEX_HOOKS_PATH`.
  [[nodiscard]] QString hooksURL() const { return file(); }
  /// `~/.codex/config.toml`, or the path in `MORVO_CODEX_CONFIG_PATH`.
  [[nodiscard]] QString configURL() const;

  [[nodiscard]] nlohmann::json withHooksAdded(nlohmann::json settings) const override;
  /// Both the hooks and the feature switch are there.
  [[nodiscard]] bool isConnected() const override;

  /// Turns the switch on and writes the file, also when nothing changed. Fails without writing when
  /// that would spoil a file that Codex understands.
  [[nodiscard]] std::expected<void, HookError> enableHooksFeature();

protected:
  [[nodiscard]] std::expected<void, HookError> prepare() override { return switchHooksOn(); }
  [[nodiscard]] QStringList furtherObstacles(const nlohmann::json &settings,
                                             bool entered) const override;

private:
  /// The configuration's text, empty when there is no file.
  [[nodiscard]] std::expected<QByteArray, HookError> config() const;
  /// `enableHooksFeature` under a lock that is held already.
  [[nodiscard]] std::expected<void, HookError> switchHooksOn();
  [[nodiscard]] QStringList switchObstacles(const QByteArray &toml, bool entered) const;
};

} // namespace morvo
