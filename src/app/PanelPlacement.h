#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// Where a panel stands on the screen.
namespace morvo::PanelPlacement {

/// What the panel may stand by, as far as it is known; the screen's coordinates.
struct Anchors {
  std::optional<QRect> icon;
  /// The pointer, when a click brought the panel up.
  std::optional<QPoint> click;
  std::optional<QRect> pet;
};

/// What the panel stands by: the icon, else the click, else the pet.
[[nodiscard]] std::optional<QRect> anchor(const Anchors &anchors);

/// The panel's top left corner: beneath or above its anchor, whichever has the room, and centred on
/// it; without any, or with one on another screen, in the upper right corner. Always whole inside
/// `workArea` where it fits.
[[nodiscard]] QPoint origin(QSize panel, const QRect &workArea, const std::optional<QRect> &anchor);

} // namespace morvo::PanelPlacement
