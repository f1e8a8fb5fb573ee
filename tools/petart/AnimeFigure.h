#pragma once

#include "AnimePose.h"

#include <QImage>

/// The girl's looks: hoodie, headphones with ears, and a ponytail on one side.
namespace morvo::AnimeFigure {

/// The picture of this pose on a transparent canvas. The same pose always gives the same bytes.
[[nodiscard]] QImage picture(const AnimePose &pose);

/// Where the top of the head stands on the canvas, and how far the head leans, in degrees: what her
/// hair follows.
[[nodiscard]] QPointF crown(const AnimePose &pose);
[[nodiscard]] double headLean(const AnimePose &pose);

} // namespace morvo::AnimeFigure
