#pragma once

#include <QString>

#include <span>

namespace morvo {

/// A switch of the monitor tab: a stored boolean with its words.
struct MonitorToggle {
  QString key;
  bool fallback = false; ///< While nothing is stored.
  QString label;
  QString hint;
};

namespace MonitorToggles {

/// In their order.
[[nodiscard]] std::span<const MonitorToggle> all();

} // namespace MonitorToggles
} // namespace morvo
