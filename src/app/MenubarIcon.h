#pragma once

#include <QIcon>
#include <QString>

#include <vector>

/// The pictures that the tray shows.
namespace morvo::MenubarIcon {

/// The pet's icon with a red dot at its upper right corner: something waits for a decision.
[[nodiscard]] QIcon overlayDot(const QIcon &icon);

/// Stands in for a pet without frames: its species mark, and a warning mark while something waits.
[[nodiscard]] QIcon title(bool pending);

} // namespace morvo::MenubarIcon
