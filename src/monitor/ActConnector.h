#pragma once

#include "monitor/HookContext.h"
#include "monitor/HookError.h"

#include <nlohmann/json.hpp>

namespace morvo {

/// The approval hook of Claude Code: before a tool changes something, `perm.sh` asks in the inbox
/// and waits for a decision file. Independent of the event hooks: either can be on alone.
class ActConnector {
public:
  explicit ActConnector(HookContext context);

  /// The command of our entry: `perm.sh` and the source name.
  [[nodiscard]] QString command() const;
  /// The settings with our group under "PreToolUse"; unchanged when it is there.
  [[nodiscard]] nlohmann::json added(nlohmann::json settings) const;
  /// The settings without our entry, and without what it leaves empty.
  [[nodiscard]] nlohmann::json removed(nlohmann::json settings) const;

  /// Whether the settings hold our entry.
  [[nodiscard]] bool isEntered(const nlohmann::json &settings) const;

  /// Turns the hook on in Claude's settings file, installing the scripts first, or off. On failure
  /// the settings file is as it was.
  [[nodiscard]] std::expected<void, HookError> setConnected(bool on);

  /// Writes `~/.morvo/decisions/<id>.json` for the script that waits for it. A failure is ignored:
  /// the script then times out and the agent asks for itself. The id comes from the inbox, where
  /// anyone may write: one that is no plain file name of at most 64 bytes writes nothing, and a
  /// symbolic link in the file's place is left alone.
  void decide(const QString &id, bool allow) const;

private:
  HookContext m_context;
};

} // namespace morvo
