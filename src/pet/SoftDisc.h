#pragma once

#include <QColor>
#include <QPointF>

class QPainter;

namespace morvo {

/// A disc of one colour, blurred: the glow behind the pet. Drawn as a gradient with the profile of
/// a blurred edge, so it costs one fill at any size.
struct SoftDisc {
  double diameter = 0; ///< Of the disc before it is blurred.
  double blur = 0;     ///< Radius of the blur.
  double opacity = 1;  ///< In the middle.

  /// How far from its centre the disc can be seen.
  [[nodiscard]] double reach() const;
  /// Its opacity at that distance from the centre.
  [[nodiscard]] double opacityAt(double distance) const;
  /// Fades out before `limit`, for a picture that ends there.
  void paint(QPainter &painter, QPointF centre, const QColor &color, double limit) const;
  void paint(QPainter &painter, QPointF centre, const QColor &color) const;
};

} // namespace morvo
