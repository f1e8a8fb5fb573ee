#pragma once

#include <QColor>
#include <QImage>
#include <QString>

/// The default pet as a drawing, for a persona without any frames.
namespace morvo::MorvoView {

/// The drawing at rest, in a frame of 130 by 120 points.
[[nodiscard]] QImage picture(const QColor &accent, double scale);

/// The tint for a mood.
[[nodiscard]] QColor accent(const QString &mood);

} // namespace morvo::MorvoView
