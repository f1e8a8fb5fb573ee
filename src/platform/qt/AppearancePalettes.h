#pragma once

#include "platform/Appearance.h"

#include <QPalette>

/// The colours of the program's windows, light and dark.
namespace morvo::AppearancePalettes {

[[nodiscard]] QPalette light();
[[nodiscard]] QPalette dark();

/// Gives the application the palette; `followSystem` gives it back to the desktop. Needs a
/// QApplication; main thread.
void apply(Appearance appearance);

} // namespace morvo::AppearancePalettes
