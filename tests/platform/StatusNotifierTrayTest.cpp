#include "platform/linux/LinuxTrayPresence.h"
#include "platform/qt/QtTrayIcon.h"
#include "support/OwnedProcess.h"
#include "support/RunUntil.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QPixmap>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::runUntil;

/// A panel's watcher in a process of its own, since Qt asks it and waits. It writes the name of
/// each item that registers. It takes its host only when told by a line.
const QString watcher = QStringLiteral(R"(
import sys, dbus, dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib
DBusGMainLoop(set_as_default=True)
NAME = 'org.kde.StatusNotifierWatcher'
class Watcher(dbus.service.Object):
    hosted = False
    @dbus.service.method(NAME, in_signature='s', sender_keyword='sender')
    def RegisterStatusNotifierItem(self, item, sender=None):
        print(item, flush=True)
    @dbus.service.method('org.freedesktop.DBus.Properties', in_signature='ss', out_signature='v')
    def Get(self, interface, name):
        return dbus.Boolean(self.hosted) if name == 'IsStatusNotifierHostRegistered' else dbus.Int32(0)
    @dbus.service.method('org.freedesktop.DBus.Introspectable', out_signature='s',
                         path_keyword='path', connection_keyword='connection')
    def Introspect(self, path, connection):
        # Qt reads no property that is not listed here.
        head = '<interface name="%s">' % NAME
        listed = '<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>'
        return dbus.service.Object.Introspect(self, path, connection).replace(head, head + listed)
    @dbus.service.signal(NAME)
    def StatusNotifierHostRegistered(self):
        pass
def told(channel, condition):
    sys.stdin.readline()
    watcher.hosted = True
    watcher.StatusNotifierHostRegistered()
    return False
bus = dbus.SessionBus()
watcher = Watcher(bus, '/StatusNotifierWatcher')
owned = dbus.service.BusName(NAME, bus)
GLib.io_add_watch(0, GLib.IO_IN, told)
print('ready', flush=True)
GLib.MainLoop().run()
)");

TEST(StatusNotifierTrayTest, TheIconRegistersWithAPanelThatComesLater) {
  LinuxTrayPresence presence(QDBusConnection::sessionBus());
  QtTrayIcon icon(presence);
  int activations = 0;
  icon.onActivated([&] { ++activations; });
  QPixmap pixmap(22, 22);
  pixmap.fill(Qt::cyan);
  icon.setIcon(pixmap);
  icon.show();
  QCoreApplication::processEvents();
  EXPECT_EQ(icon.geometry(), std::nullopt);

  test::OwnedProcess panel;
  ASSERT_TRUE(panel.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), watcher}));
  ASSERT_EQ(panel.line(), "ready");
  panel.process().write("host\n");
  ASSERT_TRUE(runUntil([&] { return panel.process().canReadLine(); }));
  const QByteArray item = panel.line();
  EXPECT_EQ(icon.geometry(), std::nullopt);

  auto other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("host"));
  auto click = QDBusMessage::createMethodCall(
      QString::fromUtf8(item), QStringLiteral("/StatusNotifierItem"),
      QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Activate"));
  click << 10 << 10;
  EXPECT_TRUE(other.send(click));
  EXPECT_TRUE(runUntil([&] { return activations == 1; }));
}

} // namespace
} // namespace morvo
