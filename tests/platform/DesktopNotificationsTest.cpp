#include "platform/linux/DesktopNotifications.h"

#include "support/PrivateBus.h"
#include "support/RunUntil.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <optional>

namespace morvo {

/// A notification service that keeps what it is told.
class NotificationServer : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
  struct Shown {
    QString application;
    uint replaced = 0;
    QString title;
    QString body;
    QStringList actions;
    QVariantMap hints;
  };

  explicit NotificationServer(QDBusConnection bus) : m_bus(std::move(bus)) {
    m_bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
  }
  NotificationServer(const NotificationServer &) = delete;
  NotificationServer &operator=(const NotificationServer &) = delete;
  ~NotificationServer() override {
    m_bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
    m_bus.unregisterObject(QStringLiteral("/org/freedesktop/Notifications"));
  }

  QStringList m_capabilities{QStringLiteral("body"), QStringLiteral("actions")};
  std::vector<Shown> m_shown;
  std::vector<uint> m_closed;
  int m_asked = 0;
  bool m_refuses = false;
  bool m_hangs = false;

  Q_SLOT QStringList GetCapabilities() {
    ++m_asked;
    setDelayedReply(m_hangs);
    return m_capabilities;
  }
  Q_SLOT uint Notify(const QString &application, uint replaced, const QString & /*icon*/,
                     const QString &title, const QString &body, const QStringList &actions,
                     const QVariantMap &hints, int /*timeout*/) {
    setDelayedReply(m_hangs);
    if (m_refuses) {
      sendErrorReply(QDBusError::Failed, QStringLiteral("no"));
      return 0;
    }
    m_shown.push_back({application, replaced, title, body, actions, hints});
    return static_cast<uint>(m_shown.size()) + 40;
  }

  Q_SLOT void CloseNotification(uint id) { m_closed.push_back(id); }

  Q_SIGNAL void ActionInvoked(uint id, const QString &action);
  Q_SIGNAL void NotificationClosed(uint id, uint reason);

private:
  QDBusConnection m_bus;
};

namespace {

using namespace std::chrono_literals;
using test::runUntil;

const QString notificationsName = QStringLiteral("org.freedesktop.Notifications");

/// A service that the bus starts. It clicks again and again on what it has shown, since a click may
/// overtake the answer that tells the notification's number. It ends when shown "end".
const QByteArray startedService = R"(
import os, dbus, dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib
DBusGMainLoop(set_as_default=True)
NAME = 'org.freedesktop.Notifications'
class Service(dbus.service.Object):
    @dbus.service.method(NAME, out_signature='as')
    def GetCapabilities(self):
        return ['body', 'actions']
    @dbus.service.method(NAME, in_signature='susssasa{sv}i', out_signature='u')
    def Notify(self, application, replaced, icon, title, body, actions, hints, timeout):
        if title == 'end':
            GLib.idle_add(os._exit, 0)
        GLib.timeout_add(20, self.click)
        return 7
    def click(self):
        self.ActionInvoked(7, 'default')
        return True
    @dbus.service.signal(NAME, signature='us')
    def ActionInvoked(self, number, action):
        pass
bus = dbus.SessionBus()
service = Service(bus, '/org/freedesktop/Notifications')
owned = dbus.service.BusName(NAME, bus)
GLib.MainLoop().run()
)";

class DesktopNotificationsTest : public testing::Test {
protected:
  void startServer() { m_server = std::make_unique<NotificationServer>(m_bus.connect()); }
  void open(std::chrono::milliseconds deadline = 10s) {
    m_notifications = std::make_unique<DesktopNotifications>(m_bus.connect(), deadline);
    m_notifications->onActivated([this] { ++m_activations; });
  }
  void show(const QString &title, const QString &body) {
    m_notifications->show(title, body, [this] { ++m_failures; });
  }
  [[nodiscard]] NotificationServer::Shown shown() {
    EXPECT_TRUE(runUntil([this] { return !m_server->m_shown.empty(); }));
    return m_server->m_shown.empty() ? NotificationServer::Shown{} : m_server->m_shown.back();
  }
  /// Lets the bus start a service at the first call.
  void offerService() {
    QFile script(m_folder.filePath(QStringLiteral("service.py")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(startedService);
    script.close();
    m_bus.startOnDemand(notificationsName, QStringLiteral("/usr/bin/python3 ") + script.fileName());
  }
  /// Messages on one connection keep their order: what was sent before has arrived.
  void settle() {
    const int failures = m_failures;
    show(QStringLiteral("settle"), QString());
    EXPECT_TRUE(runUntil([&] {
      return m_failures > failures ||
             (!m_server->m_shown.empty() && m_server->m_shown.back().title == u"settle");
    }));
  }

  QTemporaryDir m_folder;
  test::PrivateBus m_bus;
  std::unique_ptr<NotificationServer> m_server;
  std::unique_ptr<DesktopNotifications> m_notifications;
  int m_failures = 0;
  int m_activations = 0;
};

TEST_F(DesktopNotificationsTest, ShowsTitleAndBodyUnderTheProgramsName) {
  startServer();
  open();
  EXPECT_TRUE(m_notifications->isAvailable());
  show(QStringLiteral("标题"), QStringLiteral("正文"));
  const auto seen = shown();
  EXPECT_EQ(seen.application, QStringLiteral("MorvoBar"));
  EXPECT_EQ(seen.title, QStringLiteral("标题"));
  EXPECT_EQ(seen.body, QStringLiteral("正文"));
  EXPECT_EQ(seen.replaced, 0U);
  EXPECT_EQ(seen.hints.value(QStringLiteral("desktop-entry")), QStringLiteral("morvobar"));
  EXPECT_EQ(seen.hints.value(QStringLiteral("sound-name")), QStringLiteral("message-new-instant"));
  EXPECT_EQ(seen.actions.value(0), QStringLiteral("default"));
}

TEST_F(DesktopNotificationsTest, PlainTextStaysPlainWhereTheServiceReadsMarkup) {
  startServer();
  m_server->m_capabilities << QStringLiteral("body-markup");
  open();
  show(QStringLiteral("<b>"), QStringLiteral("a < b && <i>x</i>"));
  const auto seen = shown();
  EXPECT_EQ(seen.title, QStringLiteral("<b>"));
  EXPECT_EQ(seen.body, QStringLiteral("a &lt; b &amp;&amp; &lt;i&gt;x&lt;/i&gt;"));
}

TEST_F(DesktopNotificationsTest, TextIsUntouchedWhereTheServiceReadsNone) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("a < b & c"));
  EXPECT_EQ(shown().body, QStringLiteral("a < b & c"));
}

TEST_F(DesktopNotificationsTest, OffersNoActionToAServiceWithoutActions) {
  startServer();
  m_server->m_capabilities.clear();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_EQ(shown().actions, QStringList());
}

TEST_F(DesktopNotificationsTest, AZeroInTheTextIsNoEnd) {
  startServer();
  open();
  show(QStringLiteral("a") + QChar::Null + QStringLiteral("b"), QString(QChar(0xD800)));
  EXPECT_EQ(shown().title, QStringLiteral("ab"));
}

TEST_F(DesktopNotificationsTest, AClickOnOneOfItsOwnIsTold) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_EQ(shown().title, QStringLiteral("t"));
  settle();
  const uint id = 41;
  Q_EMIT m_server->ActionInvoked(id, QStringLiteral("default"));
  EXPECT_TRUE(runUntil([this] { return m_activations == 1; }));
}

TEST_F(DesktopNotificationsTest, OneThatWasClickedIsTakenAwayAndNoOther) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  show(QStringLiteral("u"), QStringLiteral("b"));
  ASSERT_TRUE(runUntil([this] { return m_server->m_shown.size() == 2; }));
  settle();
  Q_EMIT m_server->ActionInvoked(41, QStringLiteral("snooze"));
  Q_EMIT m_server->ActionInvoked(41, QStringLiteral("default"));
  EXPECT_TRUE(runUntil([this] { return m_server->m_closed == std::vector<uint>{41}; }));
  EXPECT_EQ(m_activations, 1);
}

TEST_F(DesktopNotificationsTest, ClicksOnOthersOtherActionsAndClosedOnesAreNot) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_EQ(shown().title, QStringLiteral("t"));
  Q_EMIT m_server->ActionInvoked(7, QStringLiteral("default"));
  Q_EMIT m_server->ActionInvoked(41, QStringLiteral("snooze"));
  Q_EMIT m_server->NotificationClosed(41, 2);
  Q_EMIT m_server->ActionInvoked(41, QStringLiteral("default"));
  settle();
  EXPECT_EQ(m_activations, 0);
}

TEST_F(DesktopNotificationsTest, ARefusalIsTold) {
  startServer();
  m_server->m_refuses = true;
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_EQ(m_failures, 0);
  EXPECT_TRUE(runUntil([this] { return m_failures == 1; }));
}

TEST_F(DesktopNotificationsTest, AServiceThatHangsIsGivenUpAtTheDeadline) {
  startServer();
  m_server->m_hangs = true;
  open(50ms);
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([this] { return m_failures == 1; }));
}

TEST_F(DesktopNotificationsTest, WithoutServiceItIsNotAvailableAndAShowFails) {
  open();
  EXPECT_TRUE(runUntil([this] { return !m_notifications->isAvailable(); }));
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([this] { return m_failures == 1; }));
}

TEST_F(DesktopNotificationsTest, AServiceThatComesLaterServes) {
  open();
  ASSERT_TRUE(runUntil([this] { return !m_notifications->isAvailable(); }));
  startServer();
  EXPECT_TRUE(runUntil([this] { return m_notifications->isAvailable(); }));
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_EQ(shown().title, QStringLiteral("t"));
}

TEST_F(DesktopNotificationsTest, AServiceThatGoesIsNoticed) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_EQ(shown().title, QStringLiteral("t"));
  m_server.reset();
  EXPECT_TRUE(runUntil([this] { return !m_notifications->isAvailable(); }));
}

TEST_F(DesktopNotificationsTest, AServiceThatTheBusCanStartIsStartedByTheFirstNotification) {
  offerService();
  open(10min);
  ASSERT_FALSE(m_bus.hasName(notificationsName));
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([this] { return m_activations > 0; }));
  EXPECT_TRUE(m_bus.hasName(notificationsName));
  EXPECT_EQ(m_failures, 0);
}

TEST_F(DesktopNotificationsTest, AServiceThatTheBusCanStartStaysAvailableWhenItEnds) {
  offerService();
  open(10min);
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_TRUE(runUntil([this] { return m_activations > 0; }));
  // Its end comes before or instead of an answer.
  show(QStringLiteral("end"), QStringLiteral("b"));
  ASSERT_TRUE(runUntil([this] { return !m_bus.hasName(notificationsName); }));
  bool wasAvailable = true;
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([&] {
    wasAvailable = wasAvailable && m_notifications->isAvailable();
    return m_bus.hasName(notificationsName);
  }));
  m_activations = 0;
  EXPECT_TRUE(runUntil([this] { return m_activations > 0; }));
  EXPECT_TRUE(wasAvailable);
  EXPECT_LE(m_failures, 1);
}

TEST_F(DesktopNotificationsTest, AServiceThatTheBusFailsToStartCountsAsARefusal) {
  m_bus.startOnDemand(notificationsName, m_folder.filePath(QStringLiteral("missing")));
  open(10min);
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([this] { return m_failures == 1; }));
}

TEST_F(DesktopNotificationsTest, AnotherServiceIsAskedAnewWhatItCanDo) {
  startServer();
  m_server->m_capabilities << QStringLiteral("body-markup");
  open();
  show(QStringLiteral("t"), QStringLiteral("<"));
  ASSERT_EQ(shown().body, QStringLiteral("&lt;"));
  m_server.reset();
  ASSERT_TRUE(runUntil([this] { return !m_notifications->isAvailable(); }));
  startServer();
  ASSERT_TRUE(runUntil([this] { return m_notifications->isAvailable(); }));
  show(QStringLiteral("t"), QStringLiteral("<"));
  EXPECT_EQ(shown().body, QStringLiteral("<"));
}

TEST_F(DesktopNotificationsTest, ClicksOnWhatAServiceShowedThatIsGoneAreNotTold) {
  startServer();
  open();
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_EQ(shown().title, QStringLiteral("t"));
  m_server.reset();
  ASSERT_TRUE(runUntil([this] { return !m_notifications->isAvailable(); }));
  startServer();
  ASSERT_TRUE(runUntil([this] { return m_notifications->isAvailable(); }));
  Q_EMIT m_server->ActionInvoked(41, QStringLiteral("default"));
  settle();
  EXPECT_EQ(m_activations, 0);
}

TEST_F(DesktopNotificationsTest, TheEndOfTheBusIsTheFailureOfWhatIsStillPending) {
  startServer();
  m_server->m_hangs = true;
  open(10min);
  show(QStringLiteral("t"), QStringLiteral("b"));
  ASSERT_TRUE(runUntil([this] { return m_server->m_asked > 0; }));
  EXPECT_EQ(m_failures, 0);
  m_bus.end();
  EXPECT_TRUE(runUntil([this] { return m_failures == 1; }));
  EXPECT_FALSE(m_notifications->isAvailable());
  show(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(runUntil([this] { return m_failures == 2; }));
}

TEST_F(DesktopNotificationsTest, WithoutABusAShowFailsLater) {
  DesktopNotifications notifications(QDBusConnection(QStringLiteral("never connected")));
  EXPECT_FALSE(notifications.isAvailable());
  int failures = 0;
  notifications.show(QStringLiteral("t"), QStringLiteral("b"), [&] { ++failures; });
  EXPECT_EQ(failures, 0);
  EXPECT_TRUE(runUntil([&] { return failures == 1; }));
}

} // namespace
} // namespace morvo

#include "DesktopNotificationsTest.moc"
