#pragma once

#include "MorvoPose.h"

#include <QString>

#include <span>

/// How the creature moves: the poses of each of its frame sets.
namespace morvo::MorvoChoreography {

struct FrameSet {
  QStringView name;
  int frames;
  /// The pose at a phase from 0 (first frame) to 1. A loop's phase never reaches 1, which would be
  /// its first frame again; a one-shot's last frame stands at 1.
  MorvoPose (*pose)(double phase);
  bool loop;
};

[[nodiscard]] std::span<const FrameSet> frameSets();

/// The pose of the frame with this index.
[[nodiscard]] MorvoPose poseAt(const FrameSet &set, int frame);

} // namespace morvo::MorvoChoreography
