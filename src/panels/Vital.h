#pragma once

#include "panels/PanelTint.h"
#include "pet/Needs.h"

#include <QString>

#include <array>

namespace morvo {

/// One of the pet's vitals as the panel shows it.
struct Vital {
  QString emoji;
  QString label;
  int value = 0; ///< 0 to 100.
  PanelTint tint;

  /// "82%"
  [[nodiscard]] QString text() const;
  /// What it depends on, for those who ask.
  [[nodiscard]] QString help() const;

  bool operator==(const Vital &) const = default;
};

namespace Vitals {

/// In their order.
[[nodiscard]] std::array<Vital, 4> of(const Needs &needs);

} // namespace Vitals
} // namespace morvo
