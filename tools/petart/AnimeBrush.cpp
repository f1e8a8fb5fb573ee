#include "AnimeBrush.h"

#include "Motion.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::AnimeBrush {
namespace {

constexpr int hosePieces = 14;
/// A bent limb is rounder than two straight bones.
constexpr double roundness = 0.85;

} // namespace

void shape(QPainter &painter, const QPainterPath &path, const QBrush &fill, QRgb outline,
           double width) {
  painter.setPen(Shade::roundPen(QColor(outline), width));
  painter.setBrush(fill);
  painter.drawPath(path);
}

void lit(QPainter &painter, const QPainterPath &path, const QBrush &fill, QRgb light, QRgb outline,
         double side) {
  constexpr QPointF edge(4.5, 5.5);
  painter.fillPath(path, QColor(light));
  inside(painter, path, path.translated(side * edge.x(), edge.y()), fill);
  stroke(painter, path, QColor(outline), line);
}

void inside(QPainter &painter, const QPainterPath &within, const QPainterPath &path,
            const QBrush &fill) {
  painter.save();
  painter.setClipPath(within, Qt::IntersectClip);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawPath(path);
  painter.restore();
}

void stroke(QPainter &painter, const QPainterPath &path, const QColor &color, double width) {
  painter.setPen(Shade::roundPen(color, width));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(path);
}

QPolygonF hose(QPointF from, QPointF to, double length, double bend) {
  const QPointF way = to - from;
  const double distance = std::max(std::hypot(way.x(), way.y()), 0.01);
  const double slack = std::sqrt(std::max(length * length - distance * distance, 0.0));
  const QPointF across(way.y() / distance, -way.x() / distance);
  const QPointF middle = (from + to) / 2 + across * slack * bend * roundness;
  QPolygonF points;
  for (int piece = 0; piece <= hosePieces; ++piece) {
    const double part = static_cast<double>(piece) / hosePieces;
    const double left = 1 - part;
    points.append(from * (left * left) + middle * (2 * part * left) + to * (part * part));
  }
  return points;
}

QPolygonF stretch(const QPolygonF &hose, double from, double to) {
  const auto last = static_cast<double>(hose.size() - 1);
  const auto at = [&](double part) {
    const double place = std::clamp(part, 0.0, 1.0) * last;
    const auto before = static_cast<qsizetype>(std::min(std::floor(place), last - 1));
    const double rest = place - static_cast<double>(before);
    return hose[before] * (1 - rest) + hose[before + 1] * rest;
  };
  QPolygonF points;
  for (int piece = 0; piece <= hosePieces; ++piece) {
    points.append(at(Motion::mix(from, to, static_cast<double>(piece) / hosePieces)));
  }
  return points;
}

QPainterPath tube(const QPolygonF &hose, double from, double to) {
  QPolygonF left;
  QPolygonF right;
  const qsizetype last = hose.size() - 1;
  for (qsizetype at = 0; at <= last; ++at) {
    const QPointF way = hose[std::min(at + 1, last)] - hose[std::max<qsizetype>(at - 1, 0)];
    const double length = std::max(std::hypot(way.x(), way.y()), 0.01);
    const double half = Motion::mix(from, to, static_cast<double>(at) / static_cast<double>(last));
    const QPointF across = QPointF(-way.y(), way.x()) / length * half;
    left.append(hose[at] - across);
    right.prepend(hose[at] + across);
  }
  QPainterPath path = Shapes::openThrough(left);
  path.connectPath(Shapes::openThrough(right));
  path.closeSubpath();
  return path;
}

QPainterPath star() {
  constexpr int points = 5;
  constexpr double outer = 0.54;
  constexpr double inner = 0.3;
  QPolygonF corners;
  for (int corner = 0; corner < 2 * points; ++corner) {
    const double angle = std::numbers::pi * corner / points;
    const double radius = corner % 2 == 0 ? outer : inner;
    corners.append(QPointF(radius * std::sin(angle), -radius * std::cos(angle)));
  }
  // Rounded: the curve passes the corners and leans on the middles of the sides.
  QPainterPath path;
  const auto middle = [&](int corner) {
    return (corners[corner % (2 * points)] * 0.82 + corners[(corner + 1) % (2 * points)] * 0.18);
  };
  const auto lead = [&](int corner) {
    return (corners[corner % (2 * points)] * 0.82 +
            corners[(corner + 2 * points - 1) % (2 * points)] * 0.18);
  };
  path.moveTo(middle(0));
  for (int corner = 1; corner <= 2 * points; ++corner) {
    path.lineTo(lead(corner));
    path.quadTo(corners[corner % (2 * points)], middle(corner));
  }
  path.closeSubpath();
  return path;
}

} // namespace morvo::AnimeBrush
