#pragma once

#include <QImage>
#include <QRectF>

#include <optional>

/// Where a picture is not transparent.
namespace morvo::AlphaBounds {

/// The box around all that is more than faintly visible, in fractions of the picture from its top
/// left corner; nothing when there is no such pixel. The picture is looked at no larger than
/// `longestSide` pixels a side.
[[nodiscard]] std::optional<QRectF> normalised(const QImage &image, int longestSide);

/// The box around both; a missing one does not count.
[[nodiscard]] std::optional<QRectF> united(const std::optional<QRectF> &a,
                                           const std::optional<QRectF> &b);

/// The box in pixels around all pixels with an alpha above `faintest`; empty when there is none.
[[nodiscard]] QRect pixels(const QImage &image, int faintest);

/// The largest alpha of any pixel, 0 to 255; 0 of a null picture.
[[nodiscard]] int strongest(const QImage &image);

} // namespace morvo::AlphaBounds
