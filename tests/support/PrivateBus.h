#pragma once

#include "support/OwnedProcess.h"

#include <QDBusConnection>
#include <QTemporaryDir>

namespace morvo::test {

/// A session bus of the test's own that starts no services but those it is told of. While it lives
/// it is the session bus of this process's later connections and of the programs the process
/// starts.
class PrivateBus {
public:
  PrivateBus();
  PrivateBus(const PrivateBus &) = delete;
  PrivateBus &operator=(const PrivateBus &) = delete;
  ~PrivateBus();

  [[nodiscard]] QString address() const { return m_address; }
  /// A new connection; it is closed with the bus.
  [[nodiscard]] QDBusConnection connect();
  [[nodiscard]] QDBusConnection control() const { return m_control; }
  /// Waits, with the event loop running, until the name has an owner; false when it takes too long.
  [[nodiscard]] bool waitForName(const QString &name) const;
  [[nodiscard]] bool hasName(const QString &name) const;
  /// From now on the bus starts the program when somebody calls the name. What it starts must end
  /// with the bus.
  void startOnDemand(const QString &name, const QString &command);
  /// The bus dies.
  void end();

private:
  QTemporaryDir m_folder;
  OwnedProcess m_daemon;
  QString m_address;
  QByteArray m_outerAddress;
  QStringList m_connections;
  QDBusConnection m_control;
};

} // namespace morvo::test
