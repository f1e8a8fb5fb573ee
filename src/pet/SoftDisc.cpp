#include "pet/SoftDisc.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo {
namespace {

/// Beyond so many blur radii from the edge nothing is left that eight bits could show.
constexpr double tail = 2.4;
/// The disc gives way over this last share of a limit.
constexpr double fadingShare = 0.35;
constexpr int stops = 24;

/// From 1 down to 0 over the last part of the way to `limit`.
double within(double limit, double distance) {
  const double part = std::clamp((limit - distance) / (limit * fadingShare), 0.0, 1.0);
  return part * part * (3 - 2 * part);
}

} // namespace

double SoftDisc::reach() const { return diameter / 2 + tail * blur; }

double SoftDisc::opacityAt(double distance) const {
  const double edge = diameter / 2;
  if (blur <= 0) {
    return distance <= edge ? opacity : 0;
  }
  return opacity * 0.5 * std::erfc((distance - edge) / (blur * std::numbers::sqrt2));
}

void SoftDisc::paint(QPainter &painter, QPointF centre, const QColor &color, double limit) const {
  const double radius = std::min(reach(), limit);
  QRadialGradient light(centre, radius);
  for (int stop = 0; stop <= stops; ++stop) {
    const double part = static_cast<double>(stop) / stops;
    QColor shade = color;
    shade.setAlphaF(static_cast<float>(opacityAt(part * radius) * within(limit, part * radius)));
    light.setColorAt(part, shade);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(light);
  painter.drawEllipse(centre, radius, radius);
}

void SoftDisc::paint(QPainter &painter, QPointF centre, const QColor &color) const {
  // The profile itself has died away there.
  paint(painter, centre, color, reach() / (1 - fadingShare));
}

} // namespace morvo
