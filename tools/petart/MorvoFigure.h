#pragma once

#include "MorvoPose.h"

#include <QImage>

/// The creature's looks: a round calf of the deep sea with ear fins, flippers, a fluked tail, spots
/// that glow, and a lantern on a stalk.
///
/// Light: the key comes cool from the upper left, the lantern warms the forehead, and the deep
/// throws a bright rim on the lower right.
namespace morvo::MorvoFigure {

/// The picture of this pose on a transparent canvas. The same pose always gives the same bytes.
[[nodiscard]] QImage picture(const MorvoPose &pose);

} // namespace morvo::MorvoFigure
