#pragma once

#include "MorvoPose.h"

#include <vector>

/// What hangs on the creature follows its body late: ears, flippers, tail and lantern.
namespace morvo::MorvoOverlap {

/// Adds to the poses of a whole set, frame by frame, what the springs of the fins make of the
/// body's way. The first and last pose of a set that is no loop are left as they are.
void apply(std::vector<MorvoPose> &poses, bool loop);

} // namespace morvo::MorvoOverlap
