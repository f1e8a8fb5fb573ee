#pragma once

#include "monitor/HookError.h"

#include <QString>
#include <QStringList>

#include <expected>

namespace morvo {

/// Connects one coding agent: puts our hooks into the agent's own file and takes them out again.
/// The only state is in that file, read at each call. Connectors of several threads or processes
/// may change one file at once: nobody's change is lost.
class AgentConnector {
public:
  virtual ~AgentConnector() = default;

  /// The source name that comes back in the inbox as `_src`: "claude", …
  [[nodiscard]] virtual QString id() const = 0;
  /// The name shown to people: "Claude Code", …
  [[nodiscard]] virtual QString name() const = 0;
  /// The agent's file, absolute.
  [[nodiscard]] virtual QString file() const = 0;
  /// The command of our entries.
  [[nodiscard]] virtual QString command() const = 0;

  /// Installs the scripts and adds our entries. On failure the agent's file is as it was.
  [[nodiscard]] virtual std::expected<void, HookError> connect() = 0;
  /// Removes our entries; the scripts stay. On failure the agent's file is as it was.
  [[nodiscard]] virtual std::expected<void, HookError> disconnect() = 0;
  /// Whether the agent's file holds our entries; false when it cannot be read.
  [[nodiscard]] virtual bool isConnected() const = 0;
  /// What keeps, or may keep, events of the connected agent from arriving, or would if it were
  /// connected: short Chinese sentences without full stops.
  [[nodiscard]] virtual QStringList obstacles() const = 0;
};

} // namespace morvo
