#pragma once

#include "monitor/HookFileConnector.h"

namespace morvo {

/// Cursor: flat entries under "stop", "Stop", "sessionEnd" and "SessionEnd" in its hooks file,
/// which also needs a top-level `version`; one that is there stays, also after disconnecting.
class CursorConnector final : public HookFileConnector {
public:
  explicit CursorConnector(HookContext context);

  /// `~/.cursor/hooks.json`, or the path in `MORVO_CURSOR_HOOKS_PATH`.
  [[nodiscard]] QString hooksURL() const { return file(); }
  [[nodiscard]] nlohmann::json withHooksAdded(nlohmann::json settings) const override;
};

} // namespace morvo
