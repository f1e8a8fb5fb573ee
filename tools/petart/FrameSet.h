#pragma once

#include <QString>

namespace morvo {

/// One action of a pet, as far as its files are concerned.
struct FrameSet {
  /// Name of its folder.
  QStringView name;
  int frames = 0;
  /// The frame after the last is the first one again. Other sets begin and end on the rest pose.
  bool loop = false;

  /// From 0 (first frame) to 1. A loop's phase never reaches 1, which would be its first frame
  /// again; the last frame of the others stands at 1.
  [[nodiscard]] double phase(int frame) const {
    const int steps = loop ? frames : frames - 1;
    return static_cast<double>(frame) / steps;
  }
};

} // namespace morvo
