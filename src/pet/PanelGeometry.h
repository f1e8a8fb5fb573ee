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
/// As much of the panel as a person can see and take hold of.
inline constexpr int standardKeepVisible = 48;
/// As much of the sprite as stands on the screen when that much of the panel's side does.
inline constexpr int spriteKeepVisible = 32;

/// Side of the square in which the sprite is shown; of the standard size without a scale.
[[nodiscard]] int spriteSide(std::optional<double> scale);
/// The window for that scale.
[[nodiscard]] QSize panelSize(std::optional<double> scale);
/// Near the lower right corner of the work area.
[[nodiscard]] QRect defaultPlace(QSize panel, const QRect &workArea);
/// The window at a new size: its right and bottom edges stay where they are.
[[nodiscard]] QRect resized(const QRect &panel, QSize size);
/// Where the panel belongs so that at least `keepVisible` of it lies on the work area; an axis on
/// which the panel is too small for that stays as it is.
[[nodiscard]] QPoint recoveredOrigin(const QRect &panel, const QRect &workArea,
                                     int keepVisible = standardKeepVisible);
/// The monitor on which most of the panel lies, as an index into `frames`; nothing when it lies on
/// none.
[[nodiscard]] std::optional<std::size_t> screenOf(const QRect &panel,
                                                  std::span<const QRect> frames);
/// The square of the panel in which the sprite stands, below the room for the bubble.
[[nodiscard]] QRect spriteSquare(const QRect &panel);
/// Where the panel belongs so that at least `spriteKeepVisible` of the sprite lies on the work
/// area.
[[nodiscard]] QPoint reachableOrigin(const QRect &panel, const QRect &workArea);
/// Whether that much of the sprite lies on one of the work areas. The room for the bubble does not
/// count: there is nothing to be seen of it, nor to take hold of.
[[nodiscard]] bool isReachable(const QRect &panel, std::span<const QRect> workAreas);

} // namespace morvo::PanelGeometry
