#pragma once

#include <QRectF>
#include <QTransform>

namespace morvo {

/// How a still picture breathes: it rides up and down and stretches a little, standing on the
/// middle of its lower edge.
struct IdleMotion {
  double speed = 1; ///< Radians a second.
  double amp = 0;   ///< Points that the picture rides up and down.

  /// What to paint `content` through at that time, in seconds from any fixed moment. y points down.
  [[nodiscard]] QTransform at(double time, const QRectF &content) const;

  bool operator==(const IdleMotion &) const = default;
};

} // namespace morvo
