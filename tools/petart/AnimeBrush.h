#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPolygonF>

class QPainter;

/// How the girl is drawn: flat colours, one shade, and a coloured line round each part.
namespace morvo::AnimeBrush {

inline constexpr double line = 5;

/// Fills the shape and draws its outline.
void shape(QPainter &painter, const QPainterPath &path, const QBrush &fill, QRgb outline,
           double width = line);
/// The same with an edge of light on the upper left; on the upper right of a mirrored painter when
/// `side` is −1.
void lit(QPainter &painter, const QPainterPath &path, const QBrush &fill, QRgb light, QRgb outline,
         double side = 1);
/// Fills what lies inside of `within` only.
void inside(QPainter &painter, const QPainterPath &within, const QPainterPath &path,
            const QBrush &fill);
/// A line with round ends.
void stroke(QPainter &painter, const QPainterPath &path, const QColor &color, double width);

/// The middle line of a soft limb of that length from one joint to another; it bends at its middle
/// to the side that `bend` tells, as far as the length allows at 1.
[[nodiscard]] QPolygonF hose(QPointF from, QPointF to, double length, double bend);
/// A part of it.
[[nodiscard]] QPolygonF stretch(const QPolygonF &hose, double from, double to);

/// The outline of a sleeve round a middle line: straight at both ends, its half width running from
/// one value to another.
[[nodiscard]] QPainterPath tube(const QPolygonF &hose, double from, double to);

/// Five round points, about 1 high, round the origin.
[[nodiscard]] QPainterPath star();

} // namespace morvo::AnimeBrush
