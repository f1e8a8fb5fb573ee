#pragma once

#include <QIcon>
#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace morvo {

/// The program's icon in the desktop's tray. Main thread.
class TrayIcon {
public:
  virtual ~TrayIcon() = default;

  /// Shows the icon as soon as the desktop has a tray, now or later.
  virtual void show() = 0;
  virtual void setIcon(const QIcon &icon) = 0;
  virtual void setToolTip(const QString &text) = 0;
  /// Called when the user clicks the icon.
  virtual void onActivated(std::function<void()> handler) = 0;
  /// Where the icon stands on the screen; nothing when the tray does not tell, or there is none.
  [[nodiscard]] virtual std::optional<QRect> geometry() const = 0;
};

} // namespace morvo
