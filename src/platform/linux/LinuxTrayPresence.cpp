#include "platform/linux/LinuxTrayPresence.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QTimer>

#include <cstdlib>
#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace morvo {
namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

struct Freed {
  void operator()(void *memory) const { std::free(memory); }
};
template <typename T> using Reply = std::unique_ptr<T, Freed>;

xcb_atom_t atom(xcb_connection_t *connection, const QByteArray &name) {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection,
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData()),
      nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool hasOwner(xcb_connection_t *connection, xcb_atom_t selection) {
  const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, selection), nullptr));
  return reply && reply->owner != XCB_WINDOW_NONE;
}

xcb_connection_t *screenConnection() {
  const auto *application =
      qGuiApp == nullptr ? nullptr : qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return application == nullptr ? nullptr : application->connection();
}

} // namespace

LinuxTrayPresence::LinuxTrayPresence(QDBusConnection bus) : m_bus(std::move(bus)) {
  if (m_bus.isConnected()) {
    m_bus.connect(watcherName, watcherPath, watcherName,
                  QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(hostRegistered()));
    auto *watcher = new QDBusServiceWatcher(watcherName, m_bus,
                                            QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { askWatcher(); });
    askWatcher();
  }
  watchScreen();
}

LinuxTrayPresence::~LinuxTrayPresence() {
  if (qGuiApp != nullptr) {
    qGuiApp->removeNativeEventFilter(this);
  }
}

void LinuxTrayPresence::whenPresent(std::function<void()> handler) {
  m_handler = std::move(handler);
  if (m_isPresent) {
    QTimer::singleShot(0, this, [this] { found(); });
  }
}

void LinuxTrayPresence::hostRegistered() { found(); }

void LinuxTrayPresence::askWatcher() {
  QDBusMessage message = QDBusMessage::createMethodCall(
      watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
      QStringLiteral("Get"));
  message << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
  // A watcher is a part of a running panel; starting one would bring up a panel nobody asked for.
  message.setAutoStartService(false);
  auto *call = new QDBusPendingCallWatcher(
      m_bus.asyncCall(message, static_cast<int>(answerDeadline.count())), this);
  connect(call, &QDBusPendingCallWatcher::finished, this,
          [this](QDBusPendingCallWatcher *answered) {
            const QDBusMessage reply = answered->reply();
            answered->deleteLater();
            if (reply.type() == QDBusMessage::ReplyMessage &&
                reply.arguments().value(0).value<QDBusVariant>().variant().toBool()) {
              found();
            }
          });
}

void LinuxTrayPresence::watchScreen() {
  auto *connection = screenConnection();
  if (connection == nullptr) {
    return;
  }
  m_managerAtom = atom(connection, "MANAGER");
  m_trayAtom = atom(connection, "_NET_SYSTEM_TRAY_S0");
  // Qt has asked the root window for the messages that announce a tray. Listening before looking
  // leaves no gap between the two.
  qGuiApp->installNativeEventFilter(this);
  if (hasOwner(connection, m_trayAtom)) {
    QTimer::singleShot(0, this, [this] { found(); });
  }
}

bool LinuxTrayPresence::nativeEventFilter(const QByteArray &eventType, void *message,
                                          qintptr * /*result*/) {
  if (eventType != "xcb_generic_event_t") {
    return false;
  }
  constexpr unsigned sentBySomeone = 0x80;
  const auto *event = static_cast<const xcb_generic_event_t *>(message);
  if ((event->response_type & ~sentBySomeone) == XCB_CLIENT_MESSAGE) {
    const auto *announcement = static_cast<const xcb_client_message_event_t *>(message);
    if (announcement->type == m_managerAtom && announcement->data.data32[1] == m_trayAtom) {
      // Qt learns of the tray from this same event; it must have seen it first.
      QTimer::singleShot(0, this, [this] { found(); });
    }
  }
  return false;
}

void LinuxTrayPresence::found() {
  m_isPresent = true;
  if (const auto handler = std::exchange(m_handler, nullptr)) {
    handler();
  }
}

} // namespace morvo
