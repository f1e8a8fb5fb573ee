#pragma once

#include "base/Time.h"

#include <optional>

namespace morvo {

/// What running actions do to the picture, for whoever decides when to look next.
struct Activity {
  /// The shortest time per frame of the frame animations in play.
  std::optional<Duration> frameTime;
  /// Whether anything moves, turns, scales or fades.
  bool inMotion = false;
  /// The time until the next part of an action ends.
  std::optional<Duration> nextEnd;

  bool operator==(const Activity &) const = default;
};

} // namespace morvo
