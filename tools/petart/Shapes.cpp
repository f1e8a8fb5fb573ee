#include "Shapes.h"

#include <QLineF>
#include <QTransform>

#include <array>
#include <cmath>
#include <numbers>

namespace morvo::Shapes {
namespace {

constexpr int spinePieces = 16;
constexpr double degree = std::numbers::pi / 180;

/// One piece of a curve through `from` and `to` that leaves and arrives as its neighbours ask.
void pieceTo(QPainterPath &path, QPointF before, QPointF from, QPointF to, QPointF after) {
  path.cubicTo(from + (to - before) / 6, to - (after - from) / 6, to);
}

QPainterPath through(const QPolygonF &points, bool closed) {
  QPainterPath path;
  const qsizetype count = points.size();
  if (count < 2) {
    return path;
  }
  const auto point = [&](qsizetype index) {
    return closed ? points[(index + count) % count]
                  : points[std::clamp<qsizetype>(index, 0, count - 1)];
  };
  path.moveTo(points.front());
  for (qsizetype at = 0; at < (closed ? count : count - 1); ++at) {
    pieceTo(path, point(at - 1), point(at), point(at + 1), point(at + 2));
  }
  if (closed) {
    path.closeSubpath();
  }
  return path;
}

} // namespace

QPainterPath openThrough(const QPolygonF &points) { return through(points, false); }

QPainterPath closedThrough(const QPolygonF &points) { return through(points, true); }

QPolygonF spine(double length, double bend, double whip) {
  QPolygonF points{{0, 0}};
  double angle = 0;
  for (int piece = 0; piece < spinePieces; ++piece) {
    const double part = (piece + 0.5) / spinePieces;
    angle += (bend + (part > 0.5 ? 2 * whip : 0)) / spinePieces;
    const double way = length / spinePieces;
    points.append(points.back() +
                  QPointF(way * std::sin(angle * degree), -way * std::cos(angle * degree)));
  }
  return points;
}

QPainterPath limb(const QPolygonF &spine, const std::function<double(double)> &halfWidth) {
  QPolygonF left;
  QPolygonF right;
  const qsizetype last = spine.size() - 1;
  for (qsizetype at = 0; at <= last; ++at) {
    const QPointF way = spine[std::min(at + 1, last)] - spine[std::max<qsizetype>(at - 1, 0)];
    const double length = std::hypot(way.x(), way.y());
    const QPointF across(-way.y() / length, way.x() / length);
    const double half = halfWidth(static_cast<double>(at) / static_cast<double>(last));
    left.append(spine[at] - across * half);
    right.prepend(spine[at] + across * half);
  }
  return closedThrough(left + right);
}

double heading(const QPolygonF &spine) {
  const QPointF way = spine.back() - spine[spine.size() - 2];
  return std::atan2(way.x(), -way.y()) / degree;
}

QPainterPath heart() {
  QPainterPath path;
  path.moveTo(0, 0.44);
  path.cubicTo(-0.66, 0.02, -0.56, -0.46, -0.26, -0.46);
  path.cubicTo(-0.1, -0.46, 0, -0.34, 0, -0.24);
  path.cubicTo(0, -0.34, 0.1, -0.46, 0.26, -0.46);
  path.cubicTo(0.56, -0.46, 0.66, 0.02, 0, 0.44);
  path.closeSubpath();
  return path;
}

QPainterPath sparkle() {
  QPainterPath path;
  path.moveTo(0, -0.5);
  constexpr std::array tips{QPointF(0.5, 0), QPointF(0, 0.5), QPointF(-0.5, 0), QPointF(0, -0.5)};
  constexpr double waist = 0.11;
  QPointF from(0, -0.5);
  for (const QPointF tip : tips) {
    path.quadTo((from + tip) * waist, tip);
    from = tip;
  }
  path.closeSubpath();
  return path;
}

QPainterPath drop() {
  QPainterPath path;
  path.moveTo(0, -0.5);
  path.cubicTo(0.1, -0.2, 0.34, 0, 0.34, 0.18);
  path.cubicTo(0.34, 0.37, 0.18, 0.5, 0, 0.5);
  path.cubicTo(-0.18, 0.5, -0.34, 0.37, -0.34, 0.18);
  path.cubicTo(-0.34, 0, -0.1, -0.2, 0, -0.5);
  path.closeSubpath();
  return path;
}

QPainterPath note() {
  QTransform lean;
  lean.translate(-0.14, 0.32);
  lean.rotate(-22);
  QPainterPath head;
  head.addEllipse(QPointF(0, 0), 0.21, 0.15);
  QPainterPath stem;
  stem.moveTo(-0.01, 0.3);
  stem.lineTo(-0.01, -0.5);
  stem.cubicTo(0.08, -0.26, 0.36, -0.26, 0.28, 0.06);
  stem.cubicTo(0.26, -0.12, 0.14, -0.16, 0.07, -0.18);
  stem.lineTo(0.07, 0.3);
  stem.closeSubpath();
  return lean.map(head).united(stem);
}

QPainterPath snore() {
  QPainterPath path;
  path.moveTo(-0.34, -0.42);
  path.lineTo(0.34, -0.42);
  path.lineTo(-0.34, 0.42);
  path.lineTo(0.34, 0.42);
  return path;
}

} // namespace morvo::Shapes
