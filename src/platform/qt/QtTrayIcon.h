#pragma once

#include "platform/TrayIcon.h"
#include "platform/TrayPresence.h"

#include <QSystemTrayIcon>

#include <memory>

namespace morvo {

/// The tray icon as Qt draws it. It comes into being when the desktop's tray does. Main thread.
class QtTrayIcon final : public TrayIcon {
public:
  /// `presence` must outlive the icon.
  explicit QtTrayIcon(TrayPresence &presence);
  QtTrayIcon(const QtTrayIcon &) = delete;
  QtTrayIcon &operator=(const QtTrayIcon &) = delete;
  ~QtTrayIcon() override;

  void show() override;
  void setIcon(const QIcon &icon) override;
  void setToolTip(const QString &text) override;
  void onActivated(std::function<void()> handler) override;
  /// Nothing from StatusNotifier hosts, which never tell.
  [[nodiscard]] std::optional<QRect> geometry() const override;

private:
  void create();

  TrayPresence *m_presence;
  std::unique_ptr<QSystemTrayIcon> m_icon;
  QIcon m_picture;
  QString m_toolTip;
  std::function<void()> m_activated;
};

} // namespace morvo
