#pragma once

#include <QString>

namespace morvo {

enum class FleetStatus { running, done, idle };

/// "running", "done", "idle".
[[nodiscard]] QString rawValue(FleetStatus status);

/// A coding session that is alive on this machine.
struct FleetSession {
  QString id;      ///< The log file's name.
  QString agent;   ///< "Claude" or "Codex".
  QString project; ///< Last component of the working directory; "?" when unknown.
  FleetStatus status = FleetStatus::idle;
  int ageSec = 0; ///< Seconds since the log was last written.

  bool operator==(const FleetSession &) const = default;
};

} // namespace morvo
