#pragma once

#include "pet/stage/ActionRun.h"

#include <QString>

namespace morvo {

/// An action that sits on a node.
struct RunningAction {
  QString key;
  ActionRun run;
  bool begun = false;
  /// Ended from outside: blocks of it that are still due must not be called.
  bool removed = false;
};

} // namespace morvo
