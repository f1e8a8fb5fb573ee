#include "monitor/SessionLogs.h"

#include "usage/OpenLog.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <string_view>

namespace morvo::SessionLogs {
namespace {

constexpr auto recently = std::chrono::seconds(900);
constexpr std::array<std::string_view, 1> extensions{"jsonl"};

} // namespace

std::vector<LogFile> recentFiles(const QString &root, WallTime now, const std::stop_token &stop) {
  return LogFile::changedSince(QFile::encodeName(root).toStdString(), extensions, now - recently,
                               stop, mostFiles);
}

QByteArray tail(const std::string &path, qsizetype bytes) {
  const auto log = OpenLog::at(path);
  if (!log) {
    return {};
  }
  const std::int64_t size = log->identity().size;
  QByteArray text(std::min<qsizetype>(bytes, size), Qt::Uninitialized);
  const auto count =
      log->read(size - text.size(), text.data(), static_cast<std::size_t>(text.size()));
  text.truncate(static_cast<qsizetype>(count.value_or(0)));
  return text;
}

} // namespace morvo::SessionLogs
