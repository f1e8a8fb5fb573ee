#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// Where a panel stands on the screen.
namespace morvo::PanelPlacement {

/// The panel's top left corner, in the screen's coordinates: beneath or above the icon and centred
/// on it; without a known icon, by the pointer if that is on this screen, else in the upper right
/// corner. Always whole inside `workArea` where it fits.
[[nodiscard]] QPoint origin(QSize panel, const QRect &workArea, const std::optional<QRect> &icon,
                            const QPoint &pointer);

} // namespace morvo::PanelPlacement
