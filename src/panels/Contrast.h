#pragma once

#include <QColor>

/// What can be read on what. Colours are opaque unless said otherwise.
namespace morvo::Contrast {

/// The least contrast of text with its ground.
inline constexpr double leastForText = 4.5;

/// From 1 for equal colours to 21 for black and white.
[[nodiscard]] double ratio(const QColor &one, const QColor &other);
/// What is seen of a translucent `color` in front of `ground`.
[[nodiscard]] QColor over(const QColor &color, const QColor &ground);
/// `color`, which may be translucent, as text in front of `ground`: as it is where it can be read,
/// else no more opaque than reading takes; where its full strength does not do, mixed with `strong`
/// as little as reading takes. Comes out opaque.
[[nodiscard]] QColor readable(const QColor &color, const QColor &ground, const QColor &strong);
/// White or near-black, whichever is read better on `ground`.
[[nodiscard]] QColor textOn(const QColor &ground);

} // namespace morvo::Contrast
