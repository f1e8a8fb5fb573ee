#include "Shade.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>

namespace morvo::Shade {
namespace {

template <class Gradient> QBrush withStops(Gradient gradient, std::initializer_list<Stop> stops) {
  for (const auto &[at, color] : stops) {
    gradient.setColorAt(at, color);
  }
  return gradient;
}

int channel(int from, int to, double part) {
  return std::clamp(static_cast<int>(std::lround(from + (to - from) * part)), 0, 255);
}

} // namespace

QColor faded(QRgb rgb, double opacity) {
  QColor color(rgb);
  color.setAlphaF(static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
  return color;
}

QColor mixed(QRgb from, QRgb to, double part) {
  return {channel(qRed(from), qRed(to), part), channel(qGreen(from), qGreen(to), part),
          channel(qBlue(from), qBlue(to), part)};
}

QPen roundPen(const QColor &color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QBrush linear(QPointF from, QPointF to, std::initializer_list<Stop> stops) {
  return withStops(QLinearGradient(from, to), stops);
}

QBrush radial(QPointF centre, double radius, std::initializer_list<Stop> stops) {
  return withStops(QRadialGradient(centre, radius), stops);
}

QBrush radial(QPointF centre, double radius, QPointF focus, std::initializer_list<Stop> stops) {
  return withStops(QRadialGradient(centre, radius, focus), stops);
}

void glow(QPainter &painter, QPointF centre, double radius, QRgb rgb, double opacity) {
  glow(painter, centre, radius, radius, rgb, opacity);
}

void glow(QPainter &painter, QPointF centre, double radiusX, double radiusY, QRgb rgb,
          double opacity) {
  painter.save();
  painter.translate(centre);
  painter.scale(1, radiusY / radiusX);
  painter.setPen(Qt::NoPen);
  // A fall that ends flat, so that the eye finds no rim.
  painter.setBrush(radial({0, 0}, radiusX,
                          {{0, faded(rgb, opacity)},
                           {0.3, faded(rgb, 0.66 * opacity)},
                           {0.55, faded(rgb, 0.3 * opacity)},
                           {0.8, faded(rgb, 0.07 * opacity)},
                           {1, faded(rgb, 0)}}));
  painter.drawEllipse(QPointF(0, 0), radiusX, radiusX);
  painter.restore();
}

void innerEdge(QPainter &painter, const QPainterPath &shape, QPointF from, QRgb rgb, double opacity,
               int layers) {
  painter.save();
  painter.setPen(Qt::NoPen);
  for (int layer = 1; layer <= layers; ++layer) {
    const double part = static_cast<double>(layer) / layers;
    painter.setBrush(faded(rgb, opacity / layers));
    painter.drawPath(shape.subtracted(shape.translated(-from * part)));
  }
  painter.restore();
}

} // namespace morvo::Shade
