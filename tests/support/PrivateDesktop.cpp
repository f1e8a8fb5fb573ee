#include "support/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcessEnvironment>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <sys/prctl.h>

namespace morvo::test {
namespace {

constexpr int patience = 10000; // milliseconds

} // namespace

PrivateDesktop::PrivateDesktop(QSize screen) {
  m_running = m_home.isValid() && startServer(screen) && startWindowManager();
}

PrivateDesktop::~PrivateDesktop() {
  stop(m_compositor);
  stop(m_windowManager);
  stop(m_server);
}

bool PrivateDesktop::startServer(QSize screen) {
  const QString geometry = QStringLiteral("%1x%2x24").arg(screen.width()).arg(screen.height());
  // The server picks a free display and writes its number.
  start(m_server, QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
         QStringLiteral("0"), geometry, QStringLiteral("-nolisten"), QStringLiteral("tcp"),
         // Without this the server starts over, windows and all, whenever its last client leaves.
         QStringLiteral("-noreset")});
  QByteArray number;
  while (!number.endsWith('\n') && m_server.waitForReadyRead(patience)) {
    number += m_server.readAllStandardOutput();
  }
  if (!number.endsWith('\n')) {
    return false;
  }
  m_display = u':' + QString::fromLatin1(number.trimmed());
  qputenv("DISPLAY", m_display.toLocal8Bit());
  return true;
}

bool PrivateDesktop::startWindowManager() {
  // It runs the command when it is through with its start. Before that it already calls itself the
  // window manager, but drops the windows that ask to be shown.
  const QByteArray word("ready");
  start(m_windowManager, QStringLiteral("openbox"),
        {QStringLiteral("--sm-disable"), QStringLiteral("--startup"),
         QStringLiteral("echo ") + QString::fromLatin1(word)});
  QByteArray said;
  while (!said.contains(word) && m_windowManager.waitForReadyRead(patience)) {
    said += m_windowManager.readAllStandardOutput();
  }
  return said.contains(word);
}

void PrivateDesktop::startCompositor() {
  start(m_compositor, QStringLiteral("picom"),
        {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
         QStringLiteral("/dev/null")});
}

void PrivateDesktop::stopCompositor() { stop(m_compositor); }

QImage PrivateDesktop::screenshot() const {
  const QString path = m_home.filePath(QStringLiteral("screenshot.png"));
  static_cast<void>(
      output(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), path}));
  return QImage(path);
}

QString PrivateDesktop::output(const QString &program, const QStringList &arguments) const {
  QProcess process;
  start(process, program, arguments);
  process.waitForFinished(patience);
  return QString::fromUtf8(process.readAllStandardOutput());
}

bool PrivateDesktop::waitUntil(const std::function<bool()> &condition) {
  const QDeadlineTimer deadline(patience);
  // Wakes the loop for conditions that no event announces.
  constexpr std::chrono::milliseconds slice(20);
  QTimer wake;
  wake.start(slice);
  while (!condition()) {
    if (deadline.hasExpired()) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

void PrivateDesktop::start(QProcess &process, const QString &program,
                           const QStringList &arguments) const {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  // Nobody's own settings decide how the window manager behaves.
  environment.insert(QStringLiteral("HOME"), m_home.path());
  environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
  environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_home.path());
  environment.insert(QStringLiteral("DISPLAY"), m_display);
  process.setProcessEnvironment(environment);
  process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
  process.setStandardErrorFile(QProcess::nullDevice());
  process.start(program, arguments);
  process.waitForStarted(patience);
}

void PrivateDesktop::stop(QProcess &process) {
  if (process.state() == QProcess::NotRunning) {
    return;
  }
  process.terminate();
  if (!process.waitForFinished(patience)) {
    process.kill();
    process.waitForFinished(patience);
  }
}

} // namespace morvo::test
