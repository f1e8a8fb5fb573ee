#pragma once

#include "platform/HomeFolder.h"
#include "usage/FileIdentity.h"
#include "usage/TokenEvents.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace morvo::test {

/// A home folder with agents' logs, which ends with this object.
class LogTree {
public:
  [[nodiscard]] HomeFolder home() const { return {m_folder.path()}; }
  [[nodiscard]] QString path(const QString &relative) const { return m_folder.filePath(relative); }

  /// Writes the whole file anew.
  void write(const QString &relative, const QByteArray &content) const {
    open(relative, content, QIODevice::WriteOnly | QIODevice::Truncate);
  }
  void append(const QString &relative, const QByteArray &content) const {
    open(relative, content, QIODevice::WriteOnly | QIODevice::Append);
  }
  void setModified(const QString &relative, WallTime time) const {
    const auto milliseconds = time.time_since_epoch().count();
    const timespec stamp{.tv_sec = milliseconds / 1000, .tv_nsec = milliseconds % 1000 * 1'000'000};
    const timespec times[]{stamp, stamp};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path(relative)).constData(), times, 0), 0);
  }
  /// Writes a file anew that is there, and lets only the time of the change to its record tell:
  /// that clock of the file system may stand still for some milliseconds.
  void rewrite(const QString &relative, const QByteArray &content, WallTime time) const {
    const auto before = identity(relative);
    write(relative, content);
    do {
      setModified(relative, time);
    } while (!testing::Test::HasFatalFailure() && identity(relative).changed == before.changed);
  }

private:
  [[nodiscard]] FileIdentity identity(const QString &relative) const {
    struct stat info{};
    EXPECT_EQ(::stat(QFile::encodeName(path(relative)).constData(), &info), 0);
    return FileIdentity::of(info);
  }
  void open(const QString &relative, const QByteArray &content, QIODevice::OpenMode mode) const {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path(relative)).path()));
    QFile file(path(relative));
    ASSERT_TRUE(file.open(mode));
    ASSERT_EQ(file.write(content), content.size());
  }

  QTemporaryDir m_folder;
};

/// A line of a reply with its use, without line feed.
inline QByteArray claudeReply(std::int64_t input, std::int64_t output = 0,
                              const QByteArray &time = "2026-03-10T11:30:00.000Z") {
  return R"({"parentUuid":null,"message":{"model":"claude-sonnet-4","role":"assistant",)"
         R"("content":[{"type":"text","text":"a \"usage\" {"}],"usage":{"input_tokens":)" +
         QByteArray::number(static_cast<qlonglong>(input)) +
         R"(,"cache_creation_input_tokens":0,"cache_read_input_tokens":7,"output_tokens":)" +
         QByteArray::number(static_cast<qlonglong>(output)) +
         R"(}},"type":"assistant","timestamp":")" + time + R"("})";
}

/// A line of a session's totals, without line feed.
inline QByteArray codexTotals(std::int64_t total, std::int64_t cached = 0) {
  return R"({"timestamp":"2026-03-10T11:30:00.000123Z","type":"event_msg","payload":)"
         R"({"type":"token_count","info":{"total_token_usage":{"input_tokens":1,)"
         R"("cached_input_tokens":)" +
         QByteArray::number(static_cast<qlonglong>(cached)) + R"(,"total_tokens":)" +
         QByteArray::number(static_cast<qlonglong>(total)) + R"(}},"rate_limits":null}})";
}

inline std::vector<std::int64_t> billables(const TokenEvents &events) {
  std::vector<std::int64_t> counts;
  counts.reserve(events.size());
  for (const TokenEvent event : events) {
    counts.push_back(event.billable);
  }
  return counts;
}

} // namespace morvo::test
