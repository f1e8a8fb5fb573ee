#include "platform/linux/DesktopNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QTimer>
#include <QVariantMap>

#include <utility>

namespace morvo {
namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
const QString busName = QStringLiteral("org.freedesktop.DBus");

const QString applicationName = QStringLiteral("MorvoBar");
const QString desktopEntry = QStringLiteral("morvobar");
const QString sound = QStringLiteral("message-new-instant");
const QString defaultAction = QStringLiteral("default");
const QString openLabel = QStringLiteral("打开");
constexpr int serversOwnTimeout = -1;

QDBusMessage serviceCall(const QString &method) {
  return QDBusMessage::createMethodCall(serviceName, objectPath, serviceName, method);
}

QDBusMessage busCall(const QString &method) {
  return QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName,
                                        method);
}

/// A text ends at its first zero byte on the bus.
QString onWire(QString text) { return text.remove(QChar::Null); }

} // namespace

DesktopNotifications::DesktopNotifications(QDBusConnection bus, std::chrono::milliseconds deadline)
    : m_bus(std::move(bus)), m_deadline(deadline) {
  if (!m_bus.isConnected()) {
    return;
  }
  m_bus.connect(serviceName, objectPath, serviceName, QStringLiteral("ActionInvoked"), this,
                SLOT(actionInvoked(uint, QString)));
  m_bus.connect(serviceName, objectPath, serviceName, QStringLiteral("NotificationClosed"), this,
                SLOT(notificationClosed(uint, uint)));
  auto *watcher =
      new QDBusServiceWatcher(serviceName, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString &, const QString &, const QString &owner) { ownerChanged(owner); });
  askBus();
}

bool DesktopNotifications::isAvailable() const {
  return m_bus.isConnected() && (m_isOwned.value_or(true) || m_isActivatable.value_or(true));
}

void DesktopNotifications::show(const QString &title, const QString &body,
                                std::function<void()> failed) {
  if (!m_bus.isConnected()) {
    // A call without a bus is never answered.
    QTimer::singleShot(0, this, std::move(failed));
    return;
  }
  if (m_capabilities) {
    send(title, body, failed);
    return;
  }
  askCapabilities([this, title, body, failed = std::move(failed)] {
    if (m_capabilities) {
      send(title, body, failed);
    } else {
      failed();
    }
  });
}

void DesktopNotifications::onActivated(std::function<void()> handler) {
  m_activated = std::move(handler);
}

void DesktopNotifications::actionInvoked(uint id, const QString &action) {
  if (!m_shown.contains(id) || action != defaultAction) {
    return;
  }
  // Not all services take away what has been answered, and it would stand before what it opened.
  QDBusMessage close = serviceCall(QStringLiteral("CloseNotification"));
  close << id;
  m_bus.asyncCall(close, static_cast<int>(m_deadline.count()));
  if (m_activated) {
    m_activated();
  }
}

void DesktopNotifications::notificationClosed(uint id, uint /*reason*/) { m_shown.remove(id); }

void DesktopNotifications::call(const QDBusMessage &message, const Answer &answer) {
  auto *watcher = new QDBusPendingCallWatcher(
      m_bus.asyncCall(message, static_cast<int>(m_deadline.count())), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [answer](QDBusPendingCallWatcher *finished) {
            const QDBusMessage reply = finished->reply();
            finished->deleteLater();
            answer(reply);
          });
}

void DesktopNotifications::askBus() {
  QDBusMessage owned = busCall(QStringLiteral("NameHasOwner"));
  owned << serviceName;
  call(owned, [this](const QDBusMessage &reply) {
    m_isOwned = reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
    if (*m_isOwned) {
      askCapabilities([] {});
    }
  });
  call(busCall(QStringLiteral("ListActivatableNames")), [this](const QDBusMessage &reply) {
    m_isActivatable = reply.type() == QDBusMessage::ReplyMessage &&
                      reply.arguments().value(0).toStringList().contains(serviceName);
  });
}

void DesktopNotifications::askCapabilities(const std::function<void()> &then) {
  call(serviceCall(QStringLiteral("GetCapabilities")), [this, then](const QDBusMessage &reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) {
      m_capabilities = reply.arguments().value(0).toStringList();
    }
    then();
  });
}

void DesktopNotifications::ownerChanged(const QString &newOwner) {
  m_isOwned = !newOwner.isEmpty();
  m_capabilities.reset();
  m_shown.clear();
  if (*m_isOwned) {
    askCapabilities([] {});
  }
}

void DesktopNotifications::send(const QString &title, const QString &body,
                                const std::function<void()> &failed) {
  const QString shownBody = can(QStringLiteral("body-markup")) ? body.toHtmlEscaped() : body;
  const QStringList actions =
      can(QStringLiteral("actions")) ? QStringList{defaultAction, openLabel} : QStringList();
  const QVariantMap hints{{QStringLiteral("desktop-entry"), desktopEntry},
                          {QStringLiteral("sound-name"), sound}};
  QDBusMessage message = serviceCall(QStringLiteral("Notify"));
  message << applicationName << 0U << desktopEntry << onWire(title) << onWire(shownBody) << actions
          << hints << serversOwnTimeout;
  call(message, [this, failed](const QDBusMessage &reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) {
      m_shown.insert(reply.arguments().value(0).toUInt());
    } else {
      failed();
    }
  });
}

bool DesktopNotifications::can(const QString &capability) const {
  return m_capabilities && m_capabilities->contains(capability);
}

} // namespace morvo
