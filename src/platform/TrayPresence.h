#pragma once

#include <functional>

namespace morvo {

/// Whether the desktop has a tray that takes icons. Main thread.
class TrayPresence {
public:
  virtual ~TrayPresence() = default;

  /// Calls `handler` once, later, when a tray is there: soon when there is one already, perhaps
  /// never. A new handler replaces one that still waits.
  virtual void whenPresent(std::function<void()> handler) = 0;
};

} // namespace morvo
