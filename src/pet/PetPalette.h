#pragma once

#include "pet/AdaptiveColor.h"

#include <QString>

/// The product's colours, named in one place. Use them by these names only.
namespace morvo::PetPalette {

/// Ground of panels and bubbles.
[[nodiscard]] const AdaptiveColor &abyss();
/// Text.
[[nodiscard]] const AdaptiveColor &foam();
/// The default pet's blue.
[[nodiscard]] const AdaptiveColor &morvoBody();
/// Food, appetite.
[[nodiscard]] const AdaptiveColor &krill();
/// What needs the user.
[[nodiscard]] const AdaptiveColor &coral();

/// The colour of a mood; `theme` for every mood without a colour of its own.
[[nodiscard]] const AdaptiveColor &accent(const QString &mood, const AdaptiveColor &theme);

} // namespace morvo::PetPalette
