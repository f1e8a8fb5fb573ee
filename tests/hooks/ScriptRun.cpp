#include "hooks/ScriptRun.h"

namespace morvo::test {
namespace {

constexpr int deadlineMilliseconds = 60000;

} // namespace

ScriptRun::ScriptRun(const QString &script, const QByteArray &input, const Options &options) {
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.remove(QStringLiteral("HOME"));
  if (!options.home.isNull()) {
    environment.insert(QStringLiteral("HOME"), options.home);
  }
  for (const QString &variable : options.variables) {
    environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
  }
  m_process.setProcessEnvironment(environment);
  if (!options.workingDirectory.isEmpty()) {
    m_process.setWorkingDirectory(options.workingDirectory);
  }
  m_process.start(QStringLiteral("/bin/sh"), QStringList{script} + options.arguments);
  m_process.write(input);
  // Everything is handed over now, since no event loop runs while the test waits for other things.
  while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten(deadlineMilliseconds)) {
  }
  if (!options.holdsInput) {
    endInput();
  }
}

bool ScriptRun::finish() {
  const bool ended =
      m_process.state() == QProcess::NotRunning || m_process.waitForFinished(deadlineMilliseconds);
  m_out = m_process.readAllStandardOutput();
  m_err = m_process.readAllStandardError();
  return ended && m_process.exitStatus() == QProcess::NormalExit;
}

} // namespace morvo::test
