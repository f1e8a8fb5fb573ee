#pragma once

#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

namespace morvo::test {

/// Another program that ends with this object, and with the test program should that crash.
class OwnedProcess {
public:
  explicit OwnedProcess(
      const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment()) {
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
  }
  OwnedProcess(const OwnedProcess &) = delete;
  OwnedProcess &operator=(const OwnedProcess &) = delete;
  ~OwnedProcess() { end(); }

  /// False when there is no such program.
  [[nodiscard]] bool start(const QString &program, const QStringList &arguments) {
    m_process.start(program, arguments);
    return m_process.waitForStarted();
  }
  /// The next line of its standard output without the line feed; empty when it ends before.
  [[nodiscard]] QByteArray line() {
    while (!m_process.canReadLine() && m_process.waitForReadyRead()) {
    }
    return m_process.readLine().trimmed();
  }
  void signal(int number) const {
    if (m_process.processId() > 0) {
      ::kill(static_cast<pid_t>(m_process.processId()), number);
    }
  }
  void end() {
    if (m_process.state() != QProcess::NotRunning) {
      m_process.kill();
      m_process.waitForFinished();
    }
  }
  [[nodiscard]] QProcess &process() { return m_process; }

private:
  QProcess m_process;
};

} // namespace morvo::test
