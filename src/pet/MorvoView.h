#pragma once

#include "pet/MorvoSprite.h"

#include <QImage>

/// The default pet as a living drawing: it bobs, breathes, wags, blinks and spouts. For panels, and
/// for a persona without any frames. Keeps nothing.
namespace morvo::MorvoView {

/// How it stands `time` seconds from any fixed moment. At 0 it is at rest with its eyes open.
[[nodiscard]] MorvoSprite::Pose poseAt(double time);

/// Fits the box of 130 by 120 points into `target`, in its middle. The glow reaches beyond the box,
/// and so does the spout while the body is high. `tint` is the accent of the mood.
void paint(QPainter &painter, const QRectF &target, const QColor &tint, double time);

/// The drawing at rest in its box, at so many pixels a point; its glow dies away inside the box.
[[nodiscard]] QImage picture(const QColor &tint, double scale);

} // namespace morvo::MorvoView
