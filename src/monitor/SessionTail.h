#pragma once

#include <QByteArray>
#include <QString>

/// What the last bytes of a session's log tell of the session. Lines that are no JSON objects, as a
/// cut one is, tell nothing. Any thread.
namespace morvo::SessionTail {

struct Findings {
  /// Last component of the working directory, "/" for the root; empty when unknown.
  QString project;
  /// Whether the agent's last words ended its turn.
  bool hasEndedTurn = false;

  bool operator==(const Findings &) const = default;
};

/// Of Claude Code: the last line with a working directory names the project.
[[nodiscard]] Findings claude(const QByteArray &tail);

/// Of Codex: the first session line names the project; in the tail of a long log it is missing.
/// Nothing tells that a turn has ended.
[[nodiscard]] Findings codex(const QByteArray &tail);

} // namespace morvo::SessionTail
