#pragma once

#include "pet/PetBehaviorMode.h"

#include <limits>
#include <optional>

namespace morvo {

/// What the behaviour director is told of a scene.
struct BehaviorContext {
  QString mood;
  /// A loop that the user has chosen holds the body.
  bool stickyLoopActive = false;
  /// A one-shot is playing.
  bool performing = false;
  bool quiet = false;
  /// Infinite before the first performance.
  double secondsSincePerformance = std::numeric_limits<double>::infinity();
  /// What the pet did last of its own accord, so that it does not repeat itself.
  std::optional<QString> lastAutonomous;
  PetBehaviorMode mode = PetBehaviorMode::natural;
  /// The pet could go for a walk now.
  bool strollAvailable = false;
};

} // namespace morvo
