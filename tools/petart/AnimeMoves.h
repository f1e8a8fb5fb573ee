#pragma once

#include "AnimePose.h"
#include "FrameSet.h"

#include <span>
#include <vector>

/// How the girl moves: the poses of each of her frame sets.
namespace morvo::AnimeMoves {

[[nodiscard]] std::span<const FrameSet> frameSets();

/// The pose of every frame of one of those sets, with her hair and ears following late. Sets that
/// are no loop begin and end on the first pose of "idle".
[[nodiscard]] std::vector<AnimePose> poses(const FrameSet &set);

} // namespace morvo::AnimeMoves
