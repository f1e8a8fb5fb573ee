#pragma once

#include "platform/Setting.h"

namespace morvo {

/// Light or dark panels; `followSystem` leaves it to the desktop.
enum class Appearance { light, dark, followSystem };

/// Which appearance the user wants.
namespace AppearanceController {

/// `MORVO_APPEARANCE` if the variable exists, else the setting, dark by default. "light" and
/// "dark" name themselves; any other text follows the system.
[[nodiscard]] Appearance wanted(const Setting &setting);

} // namespace AppearanceController
} // namespace morvo
