#pragma once

#include <QString>

namespace morvo {

/// How much the pet does of its own accord, as the user has set it.
enum class PetBehaviorMode { natural, playful, rest };

/// "natural", "playful", "rest".
[[nodiscard]] QString rawValue(PetBehaviorMode mode);
/// An unknown or empty text counts as natural.
[[nodiscard]] PetBehaviorMode petBehaviorMode(const QString &rawValue);

} // namespace morvo
