#pragma once

#include "base/Environment.h"
#include "support/Awaited.h"
#include "support/ManualScheduler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <stop_token>

namespace morvo::test {

/// A folder of scripts that stand for other programs, and looks at what becomes of them.
class StandIns : public testing::Test {
protected:
  StandIns() { m_environment = Environment::ofProcess(); }
  ~StandIns() override { m_stop.request_stop(); }

  [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

  void putFile(const QString &name, const QByteArray &content) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
  }
  /// Writes the script as a program; its path.
  QString standIn(const QString &name, const QString &script) {
    putFile(name, "#!/bin/sh\n" + script.toUtf8() + '\n');
    QFile::setPermissions(path(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                          QFile::ReadOther);
    return path(name);
  }

  [[nodiscard]] QByteArray written(const QString &name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  /// The process number that a script writes into a file, with a line feed behind it.
  [[nodiscard]] pid_t writtenPid(const QString &name) const {
    EXPECT_TRUE(runUntil([&] { return written(name).endsWith('\n'); })) << name.toStdString();
    return written(name).trimmed().toInt();
  }
  [[nodiscard]] static bool isGone(pid_t process) {
    QFile state(QStringLiteral("/proc/%1/stat").arg(process));
    if (!state.open(QIODevice::ReadOnly)) {
      return true;
    }
    // An orphan may wait for whoever reaps here.
    const QByteArray text = state.readAll();
    return text.isEmpty() || text.mid(text.lastIndexOf(')') + 2, 1) == "Z";
  }
  [[nodiscard]] static bool becomesGone(pid_t process) {
    return process > 0 && runUntil([process] { return isGone(process); });
  }

  QTemporaryDir m_folder;
  ManualClock m_clock;
  ManualScheduler m_scheduler{m_clock};
  Environment m_environment;
  std::stop_source m_stop;
};

} // namespace morvo::test
