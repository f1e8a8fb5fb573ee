#pragma once

namespace morvo {

/// A percentage found in a text, and what it counts.
struct PercentHit {
  enum class Kind { left, used };

  int number = 0; ///< 0 to 100.
  Kind kind = Kind::left;

  bool operator==(const PercentHit &) const = default;
};

} // namespace morvo
