#pragma once

#include "monitor/HookFileConnector.h"

namespace morvo {

/// Gemini CLI: groups under "Stop", "AfterModel", "Notification" and "SessionEnd" in its settings.
class GeminiConnector final : public HookFileConnector {
public:
  explicit GeminiConnector(HookContext context);

  /// `~/.gemini/settings.json`, or the path in `MORVO_GEMINI_SETTINGS_PATH`.
  [[nodiscard]] QString settingsURL() const { return file(); }
  [[nodiscard]] nlohmann::json withHooksAdded(nlohmann::json settings) const override;
};

} // namespace morvo
