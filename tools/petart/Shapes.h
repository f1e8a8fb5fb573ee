#pragma once

#include <QPainterPath>
#include <QPolygonF>

#include <functional>

/// Outlines that more than one pet or effect is drawn with.
namespace morvo::Shapes {

/// A smooth curve through all points, in order.
[[nodiscard]] QPainterPath openThrough(const QPolygonF &points);
/// The same, closed.
[[nodiscard]] QPainterPath closedThrough(const QPolygonF &points);

/// The spine of a limb that grows from the origin, straight up, to `length`, and bends clockwise by
/// `bend` degrees spread evenly over it, of which the outer half takes `whip` more.
[[nodiscard]] QPolygonF spine(double length, double bend, double whip = 0);
/// The closed outline of a limb round a spine. `halfWidth` gives half of its width at a part of its
/// length from 0 to 1.
[[nodiscard]] QPainterPath limb(const QPolygonF &spine,
                                const std::function<double(double)> &halfWidth);
/// The direction of the spine's last piece, in degrees clockwise from straight up.
[[nodiscard]] double heading(const QPolygonF &spine);

// All of these stand round the origin and are about 1 high.
[[nodiscard]] QPainterPath heart();
/// Four long points, concave between.
[[nodiscard]] QPainterPath sparkle();
/// A falling drop, point upwards.
[[nodiscard]] QPainterPath drop();
/// A musical note with a flag.
[[nodiscard]] QPainterPath note();
/// The letter of sleep, as a line to be stroked.
[[nodiscard]] QPainterPath snore();

} // namespace morvo::Shapes
