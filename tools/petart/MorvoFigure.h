#pragma once

#include "MorvoPose.h"

#include <QImage>

/// The creature's looks: a small round deep-sea animal with a lantern on its head.
namespace morvo::MorvoFigure {

/// The picture of this pose on a transparent canvas. The same pose always gives the same bytes.
[[nodiscard]] QImage picture(const MorvoPose &pose);

} // namespace morvo::MorvoFigure
