#pragma once

#include <QString>

namespace morvo {

/// A small movement of the body that needs no frames.
enum class ProceduralGesture { bob, sway, perk, stretch };

/// "bob", "sway", "perk", "stretch".
[[nodiscard]] QString rawValue(ProceduralGesture gesture);

} // namespace morvo
