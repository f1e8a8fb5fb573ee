#pragma once

#include <vector>

namespace morvo {

/// Overlapping action: a part that hangs on another one by a damped spring, so that it comes late,
/// swings past, and settles. Fins, tails, hair and stalks follow the body by it.
struct Spring {
  double frequency = 2.5; ///< Of the free swing, in swings a second.
  double damping = 0.35;  ///< 0 swings for ever, 1 does not swing past.

  /// What the part does, frame by frame, when what it hangs on does `driver`, at 24 frames a
  /// second. A loop gives the swing that closes on itself; otherwise the part rests at the first
  /// value of the driver to begin with, and is brought to the last value over the last frames.
  [[nodiscard]] std::vector<double> follow(const std::vector<double> &driver, bool loop) const;

  /// How far the part stays behind: `follow` less the driver.
  [[nodiscard]] std::vector<double> lag(const std::vector<double> &driver, bool loop) const;
};

} // namespace morvo
