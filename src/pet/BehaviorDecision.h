#pragma once

#include "pet/ProceduralGesture.h"

#include <variant>

namespace morvo {

/// What the pet does of its own accord now, and when it is asked again.
struct BehaviorDecision {
  /// Plays a frame set.
  struct Play {
    QString frameSet;

    bool operator==(const Play &) const = default;
  };
  struct Stroll {
    bool operator==(const Stroll &) const = default;
  };
  /// Nothing.
  struct None {
    bool operator==(const None &) const = default;
  };
  using Move = std::variant<None, ProceduralGesture, Play, Stroll>;

  Move move;
  double wait = 0; ///< Seconds.
};

} // namespace morvo
