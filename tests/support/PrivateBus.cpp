#include "support/PrivateBus.h"

#include "support/RunUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>

namespace morvo::test {
namespace {

constexpr auto addressVariable = "DBUS_SESSION_BUS_ADDRESS";

QByteArray configuration(const QString &folder) {
  return QStringLiteral("<busconfig><type>session</type><listen>unix:path=%1/bus</listen>"
                        "<servicedir>%1</servicedir>"
                        "<auth>EXTERNAL</auth><policy context=\"default\">"
                        "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                        "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>")
      .arg(folder)
      .toUtf8();
}

int &connectionCounter() {
  static int counter = 0;
  return counter;
}

} // namespace

PrivateBus::PrivateBus()
    : m_outerAddress(qgetenv(addressVariable)), m_control(QString::fromLatin1("none")) {
  const QString path = m_folder.filePath(QStringLiteral("bus.conf"));
  QFile file(path);
  if (file.open(QIODevice::WriteOnly)) {
    file.write(configuration(m_folder.path()));
    file.close();
  }
  const bool started =
      m_daemon.start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--config-file=") + path, QStringLiteral("--nofork"),
                      QStringLiteral("--print-address=1")});
  m_address = started ? QString::fromUtf8(m_daemon.line()) : QString();
  qputenv(addressVariable, m_address.toUtf8());
  m_control = connect();
}

PrivateBus::~PrivateBus() {
  end();
  if (m_outerAddress.isNull()) {
    qunsetenv(addressVariable);
  } else {
    qputenv(addressVariable, m_outerAddress);
  }
}

QDBusConnection PrivateBus::connect() {
  const QString name = QStringLiteral("private-%1").arg(++connectionCounter());
  m_connections << name;
  return QDBusConnection::connectToBus(m_address, name);
}

bool PrivateBus::waitForName(const QString &name) const {
  return runUntil([&] { return hasName(name); });
}

bool PrivateBus::hasName(const QString &name) const {
  return m_control.interface()->isServiceRegistered(name).value();
}

void PrivateBus::startOnDemand(const QString &name, const QString &command) {
  QFile file(m_folder.filePath(name + QStringLiteral(".service")));
  if (file.open(QIODevice::WriteOnly)) {
    file.write(QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n").arg(name, command).toUtf8());
    file.close();
  }
  const QString bus = QStringLiteral("org.freedesktop.DBus");
  m_control.call(QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                QStringLiteral("ReloadConfig")));
}

void PrivateBus::end() {
  for (const QString &name : m_connections) {
    QDBusConnection::disconnectFromBus(name);
  }
  m_connections.clear();
  m_daemon.end();
}

} // namespace morvo::test
