#pragma once

#include "PetArt.h"

/// Pictures for judging a pet by eye.
namespace morvo::Sheet {

/// One row a set, on white, black and a busy ground in turn; below it the tray's icons, frames at
/// 160 points, and one frame at 480.
[[nodiscard]] QImage contact(const PetArt &pet);
/// Every frame of a set in order, row by row, with a line at the base.
[[nodiscard]] QImage strip(const PetArt &pet, const FrameSet &set);

} // namespace morvo::Sheet
