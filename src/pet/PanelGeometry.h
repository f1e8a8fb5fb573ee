#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <span>

/// Where the pet's window stands and how large it is. Device-independent pixels, y down; a
/// rectangle's right and bottom edges are exclusive (`x + width`).
namespace morvo::PanelGeometry {

/// Height above the sprite that is kept free for the speech bubble.
inline constexpr int bubbleArea = 130;

/// Side of the square in which the sprite is shown; of the standard size without a scale.
[[nodiscard]] int spriteSide(std::optional<double> scale);
/// The window for that scale.
[[nodiscard]] QSize panelSize(std::optional<double> scale);
/// Near the lower right corner of the work area.
[[nodiscard]] QRect defaultPlace(QSize panel, const QRect &workArea);
/// The window at a new size: its right and bottom edges stay where they are.
[[nodiscard]] QRect resized(const QRect &panel, QSize size);
/// Whether enough of the panel lies on one of the work areas to be seen and taken hold of.
[[nodiscard]] bool isReachable(const QRect &panel, std::span<const QRect> workAreas);

} // namespace morvo::PanelGeometry
