#pragma once

#include "Pose.h"

#include <QImage>

/// The creature's looks: a small round deep-sea animal with a lantern on its head.
namespace morvo::Creature {

/// Side of the square canvas, in pixels.
inline constexpr int canvasSide = 512;
/// Where the feet stand, from the top, in pixels. The same in every frame of rest.
inline constexpr double baseLine = 484;

/// The picture of this pose on a transparent canvas. The same pose always gives the same bytes.
[[nodiscard]] QImage picture(const Pose &pose);

} // namespace morvo::Creature
