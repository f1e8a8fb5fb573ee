#include "platform/qt/QtTrayIcon.h"

#include <utility>

namespace morvo {

QtTrayIcon::QtTrayIcon(TrayPresence &presence) : m_presence(&presence) {}

QtTrayIcon::~QtTrayIcon() { m_presence->whenPresent({}); }

void QtTrayIcon::show() {
  if (!m_icon) {
    m_presence->whenPresent([this] { create(); });
  }
}

void QtTrayIcon::setIcon(const QIcon &icon) {
  m_picture = icon;
  if (m_icon) {
    m_icon->setIcon(icon);
  }
}

void QtTrayIcon::setToolTip(const QString &text) {
  m_toolTip = text;
  if (m_icon) {
    m_icon->setToolTip(text);
  }
}

void QtTrayIcon::onActivated(std::function<void()> handler) { m_activated = std::move(handler); }

std::optional<QRect> QtTrayIcon::geometry() const {
  const QRect place = m_icon ? m_icon->geometry() : QRect();
  return place.isEmpty() ? std::nullopt : std::optional(place);
}

void QtTrayIcon::create() {
  if (m_icon) {
    return;
  }
  m_icon = std::make_unique<QSystemTrayIcon>(m_picture);
  m_icon->setToolTip(m_toolTip);
  QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, m_icon.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     // The second of two quick clicks comes as a double click alone.
                     const bool isClick = reason == QSystemTrayIcon::Trigger ||
                                          reason == QSystemTrayIcon::DoubleClick;
                     if (isClick && m_activated) {
                       m_activated();
                     }
                   });
  m_icon->show();
}

} // namespace morvo
