#pragma once

#include "platform/TrayPresence.h"

#include <QAbstractNativeEventFilter>
#include <QDBusConnection>
#include <QObject>

#include <chrono>

namespace morvo {

/// Looks for both kinds of tray: a StatusNotifier watcher with a host on the session bus, and an
/// XEmbed tray on the X screen. Never waits for an answer of either.
///
/// Qt decides once, at its first question, which kind it serves; so nothing may ask Qt for a tray
/// before one is here.
class LinuxTrayPresence final : public QObject,
                                public TrayPresence,
                                private QAbstractNativeEventFilter {
  Q_OBJECT

public:
  static constexpr std::chrono::milliseconds answerDeadline{5000};

  explicit LinuxTrayPresence(QDBusConnection bus);
  LinuxTrayPresence(const LinuxTrayPresence &) = delete;
  LinuxTrayPresence &operator=(const LinuxTrayPresence &) = delete;
  ~LinuxTrayPresence() override;

  void whenPresent(std::function<void()> handler) override;

private:
  /// The watcher has a host now.
  Q_SLOT void hostRegistered();
  bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
  void askWatcher();
  void watchScreen();
  void found();

  QDBusConnection m_bus;
  std::function<void()> m_handler;
  bool m_isPresent = false;
  /// Numbers of the X server's names; zero where there is no X screen.
  unsigned m_managerAtom = 0;
  unsigned m_trayAtom = 0;
};

} // namespace morvo
