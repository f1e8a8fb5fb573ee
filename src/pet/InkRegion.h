#pragma once

#include <QImage>
#include <QRegion>

/// Where a picture is not empty.
namespace morvo::InkRegion {

/// The cells in which a sampled pixel has at least `alpha` (1 to 255), within `area`. `area` and
/// the result are in the image's device-independent pixels, `cell` is the side of a cell in these.
/// A cell is sampled once, in its middle: choose it no larger than the details that count. The
/// image has premultiplied or plain 32-bit alpha; any other format is ink all over.
[[nodiscard]] QRegion of(const QImage &image, const QRect &area, int alpha, int cell);

} // namespace morvo::InkRegion
