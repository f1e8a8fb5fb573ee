#pragma once

#include <QColor>

namespace morvo {

/// One colour of the product in its two appearances.
struct AdaptiveColor {
  QColor light;
  QColor dark;

  [[nodiscard]] QColor in(bool darkAppearance) const { return darkAppearance ? dark : light; }
  bool operator==(const AdaptiveColor &) const = default;
};

} // namespace morvo
