#pragma once

#include <QImage>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

namespace morvo::test {

/// An X server of the test's own with a window manager, and a compositor when asked for. Ends all
/// of it, by process, when it is destroyed; the processes also end when the test program dies.
///
/// Make it before the application object: it puts its display into this process's environment.
class PrivateDesktop {
public:
  explicit PrivateDesktop(QSize screen);
  PrivateDesktop(const PrivateDesktop &) = delete;
  PrivateDesktop &operator=(const PrivateDesktop &) = delete;
  ~PrivateDesktop();

  /// Whether the server and the window manager came up.
  [[nodiscard]] bool isRunning() const { return m_running; }
  void startCompositor();
  void stopCompositor();
  /// What the whole screen shows.
  [[nodiscard]] QImage screenshot() const;
  /// Runs a program on this desktop to its end; what it wrote on standard output.
  [[nodiscard]] QString output(const QString &program, const QStringList &arguments) const;

  /// Handles events until `condition` holds; false when it still does not after ten seconds.
  [[nodiscard]] static bool waitUntil(const std::function<bool()> &condition);

private:
  bool startServer(QSize screen);
  bool startWindowManager();
  void start(QProcess &process, const QString &program, const QStringList &arguments) const;
  static void stop(QProcess &process);

  QTemporaryDir m_home;
  QString m_display;
  QProcess m_server;
  QProcess m_windowManager;
  QProcess m_compositor;
  bool m_running = false;
};

} // namespace morvo::test
