#pragma once

#include <optional>

/// How large the main panel is, in points.
namespace morvo::PanelFrame {

inline constexpr int width = 340;

/// For a screen with this much height free of bars; nothing when there is no screen.
[[nodiscard]] int height(std::optional<int> visibleHeight);

} // namespace morvo::PanelFrame
