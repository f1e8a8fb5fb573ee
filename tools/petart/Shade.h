#pragma once

#include <QBrush>
#include <QColor>
#include <QPainterPath>
#include <QPen>

#include <initializer_list>
#include <utility>

class QPainter;

/// Colour and light: soft gradients, glow, shadow and rim light.
namespace morvo::Shade {

/// A colour at a part of a gradient from 0 to 1.
using Stop = std::pair<double, QColor>;

/// The colour at this opacity, which is clamped to 0 to 1.
[[nodiscard]] QColor faded(QRgb rgb, double opacity);
/// Between two colours, channel by channel.
[[nodiscard]] QColor mixed(QRgb from, QRgb to, double part);

[[nodiscard]] QPen roundPen(const QColor &color, double width);

/// From `from` to `to`.
[[nodiscard]] QBrush linear(QPointF from, QPointF to, std::initializer_list<Stop> stops);
/// A ball of light: from `centre` outwards, brightest at `focus`.
[[nodiscard]] QBrush radial(QPointF centre, double radius, std::initializer_list<Stop> stops);
[[nodiscard]] QBrush radial(QPointF centre, double radius, QPointF focus,
                            std::initializer_list<Stop> stops);

/// A soft spot of light without an edge, round `centre`.
void glow(QPainter &painter, QPointF centre, double radius, QRgb rgb, double opacity);
void glow(QPainter &painter, QPointF centre, double radiusX, double radiusY, QRgb rgb,
          double opacity);

/// Light or shadow along the inside of a shape's edge, on the side that `from` points at: the shape
/// less itself moved by `-from`, softened by `layers` steps.
void innerEdge(QPainter &painter, const QPainterPath &shape, QPointF from, QRgb rgb, double opacity,
               int layers = 4);

} // namespace morvo::Shade
