#include "pet/IdleMotion.h"

#include <cmath>

namespace morvo {
namespace {

/// Share of its height that the picture gains and loses.
constexpr double stretch = 0.025;

} // namespace

QTransform IdleMotion::at(double time, const QRectF &content) const {
  const double wave = std::sin(speed * time);
  const QPointF foot(content.center().x(), content.bottom());
  QTransform motion;
  motion.translate(foot.x(), foot.y() + amp * wave);
  motion.scale(1, 1 + stretch * wave);
  motion.translate(-foot.x(), -foot.y());
  return motion;
}

} // namespace morvo
