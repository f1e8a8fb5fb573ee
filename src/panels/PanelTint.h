#pragma once

namespace morvo {

/// A colour of the panel by its role, before theme and appearance are known.
struct PanelTint {
  enum class Tone { foam, theme, body, krill, coral, orange, red, yellow };

  Tone tone = Tone::foam;
  double opacity = 1;

  bool operator==(const PanelTint &) const = default;
};

} // namespace morvo
