#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

namespace morvo {

/// The window that holds the main panel. Main thread.
class PanelHost {
public:
  virtual ~PanelHost() = default;

  /// Shows the panel by the icon where its place is known, else at the click that asked for it if
  /// one did, else by the pet, and gives it the keyboard.
  virtual void show(const std::optional<QRect> &icon, const std::optional<QPoint> &click) = 0;
  virtual void close() = 0;
  [[nodiscard]] virtual bool isShown() const = 0;
  /// Whether a click elsewhere has closed the panel a moment ago: that click may be the one on the
  /// icon that was meant to close it.
  [[nodiscard]] virtual bool hasJustClosedItself() const = 0;
  /// Whether a click elsewhere closes the panel; it does at first.
  virtual void setTransient(bool transient) = 0;
};

} // namespace morvo
