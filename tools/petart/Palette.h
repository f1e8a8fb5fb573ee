#pragma once

#include <QImage>

/// Pictures of few colours.
namespace morvo::Palette {

/// The picture with each pixel's colour replaced by the nearest of a few that serve it best:
/// the set of its colours is cut in two where it is widest, again and again. Flat and transparent
/// parts stay exactly as they are.
[[nodiscard]] QImage reduced(const QImage &picture);

} // namespace morvo::Palette
