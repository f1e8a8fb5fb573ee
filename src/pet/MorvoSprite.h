#pragma once

#include <QColor>
#include <QRectF>
#include <QSizeF>

class QPainter;

/// The default pet as a drawing at rest, in any size. Main thread or a painting thread; it keeps
/// nothing.
namespace morvo::MorvoSprite {

/// The box that the drawing is laid out in, in points.
inline constexpr QSizeF frame(130, 120);

/// What can differ between two drawings. The default is the pet at rest.
struct Pose {
  double bob = 0;      ///< Points that the body hangs lower.
  double breath = 1;   ///< Height of the body, as a factor; its width answers.
  double wag = 0;      ///< Degrees added to the tail's own.
  double eyesOpen = 1; ///< 0 is closed.
};

/// Fits the box into `target`, in its middle. The glow reaches beyond the box.
void paint(QPainter &painter, const QRectF &target, const QColor &tint);

/// The body in that pose, without its glow, in points from the middle of the box.
void paintBody(QPainter &painter, const QColor &tint, const Pose &pose);

/// What fits the box into `target`, its middle at the origin.
void enter(QPainter &painter, const QRectF &target);

} // namespace morvo::MorvoSprite
