#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace morvo::test {

/// One run of a hook script by /bin/sh, as an agent runs it.
class ScriptRun {
public:
  struct Options {
    QStringList arguments = {};
    /// The value of HOME; unset when null.
    QString home = {};
    /// "NAME=value" for each further variable.
    QStringList variables = {};
    QString workingDirectory = {};
    /// Whether the input stays open until `endInput`.
    bool holdsInput = false;
  };

  /// Starts the script and hands it all of `input`.
  ScriptRun(const QString &script, const QByteArray &input, const Options &options);

  void endInput() { m_process.closeWriteChannel(); }
  /// Waits for the end; false when the script hangs.
  [[nodiscard]] bool finish();
  [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
  /// After the end.
  [[nodiscard]] int exitCode() const { return m_process.exitCode(); }
  [[nodiscard]] const QByteArray &out() const { return m_out; }
  [[nodiscard]] const QByteArray &err() const { return m_err; }

private:
  QProcess m_process;
  QByteArray m_out;
  QByteArray m_err;
};

} // namespace morvo::test
