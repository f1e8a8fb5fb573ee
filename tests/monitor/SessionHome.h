#pragma once

#include "platform/HomeFolder.h"
#include "support/ManualClock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace morvo::test {

/// A home folder with session logs, each written as long ago as the test says.
class SessionHome {
public:
  [[nodiscard]] HomeFolder home() const { return {m_folder.path()}; }
  [[nodiscard]] QString path(const QString &relative) const { return m_folder.filePath(relative); }
  [[nodiscard]] WallTime now() const { return m_clock.now(); }
  [[nodiscard]] const ManualClock &clock() const { return m_clock; }

  void put(const QString &relative, const QByteArray &text, std::chrono::milliseconds age) const {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path(relative)).path()));
    QFile file(path(relative));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(text), text.size());
    file.close();
    setAge(relative, age);
  }
  void setAge(const QString &relative, std::chrono::milliseconds age) const {
    const auto at = (now() - age).time_since_epoch();
    const auto whole = std::chrono::floor<std::chrono::seconds>(at);
    const timespec stamp{.tv_sec = whole.count(),
                         .tv_nsec = std::chrono::nanoseconds(at - whole).count()};
    const std::array stamps{stamp, stamp};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path(relative)).constData(), stamps.data(),
                          AT_SYMLINK_NOFOLLOW),
              0);
  }
  void putClaude(const QString &name, const QByteArray &text, std::chrono::milliseconds age) const {
    put(QStringLiteral(".claude/projects/-p/") + name, text, age);
  }
  void putCodex(const QString &name, const QByteArray &text, std::chrono::milliseconds age) const {
    put(QStringLiteral(".codex/sessions/2026/03/10/") + name, text, age);
  }

private:
  QTemporaryDir m_folder;
  ManualClock m_clock;
};

} // namespace morvo::test
