#pragma once

#include "monitor/HookFileConnector.h"

namespace morvo {

/// Claude Code: groups under "Stop", "SubagentStop" and "Notification" in its settings file.
class ClaudeConnector final : public HookFileConnector {
public:
  explicit ClaudeConnector(HookContext context);

  /// `~/.claude/settings.json`, or the path in `MORVO_SETTINGS_PATH`.
  [[nodiscard]] QString settingsURL() const { return file(); }
  [[nodiscard]] nlohmann::json withHooksAdded(nlohmann::json settings) const override;
  [[nodiscard]] bool groupsContainOurCommand(const nlohmann::json &groups) const;

protected:
  [[nodiscard]] QStringList furtherObstacles(const nlohmann::json &settings,
                                             bool entered) const override;
};

} // namespace morvo
