#include "usage/CodexUsageReader.h"

#include "base/Json.h"
#include "usage/BackwardLines.h"

#include <QFile>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// How many of the logs are looked at.
constexpr std::size_t newest = 12;

const QByteArray marker = QByteArrayLiteral("\"rate_limits\"");

/// Beyond this many seconds from 1970 no calendar tells a date.
constexpr double farthestSecond = 8.64e12;

class Descriptor {
public:
  explicit Descriptor(const std::filesystem::path &path)
      // What is no regular file must neither be waited for nor opened by accident.
      : m_number(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC)) {}
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor() {
    if (m_number >= 0) {
      ::close(m_number);
    }
  }

  [[nodiscard]] int number() const { return m_number; }

private:
  int m_number;
};

std::optional<WallTime> timeOf(const QJsonValue &seconds) {
  const double number = seconds.toDouble();
  if (!seconds.isDouble() || std::abs(number) > farthestSecond) {
    return std::nullopt;
  }
  return WallTime(
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(number)));
}

QJsonValue rateLimits(const QJsonObject &line) {
  const QJsonValue inPayload = line.value(u"payload").toObject().value(u"rate_limits");
  return inPayload.isObject() ? inPayload : line.value(u"rate_limits");
}

bool isLater(const timespec &left, const timespec &right) {
  return std::pair(left.tv_sec, left.tv_nsec) > std::pair(right.tv_sec, right.tv_nsec);
}

} // namespace

bool CodexUsageReader::Identity::isSame(const Identity &other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}

CodexUsageReader::CodexUsageReader(HomeFolder home) : m_home(std::move(home)) {}

CodexUsageReader::~CodexUsageReader() = default;

std::optional<LiveRateLimit> CodexUsageReader::parse(const QByteArray &line) {
  if (!line.contains(marker)) {
    return std::nullopt;
  }
  const auto object = Json::parseObject(line);
  const QJsonValue found = object ? rateLimits(*object) : QJsonValue();
  if (!found.isObject()) {
    return std::nullopt;
  }
  const QJsonObject limits = found.toObject();
  const QJsonObject primary = limits.value(u"primary").toObject();
  const QJsonObject secondary = limits.value(u"secondary").toObject();
  return LiveRateLimit{.primaryPct = primary.value(u"used_percent").toDouble(),
                       .weeklyPct = secondary.value(u"used_percent").toDouble(),
                       .primaryResetsAt = timeOf(primary.value(u"resets_at")),
                       .weeklyResetsAt = timeOf(secondary.value(u"resets_at")),
                       .plan = limits.value(u"plan_type").toString()};
}

std::vector<CodexUsageReader::Log> CodexUsageReader::newestLogs(const std::filesystem::path &folder,
                                                                const std::stop_token &stop) {
  std::vector<Log> logs;
  std::vector<std::filesystem::path> folders{folder};
  while (!folders.empty() && !stop.stop_requested()) {
    const auto place = std::move(folders.back());
    folders.pop_back();
    std::error_code failure;
    std::filesystem::directory_iterator entry(place, failure);
    while (!failure && entry != std::filesystem::directory_iterator()) {
      // Links are not followed, so there is no way round in a circle.
      struct stat info{};
      const bool isThere = ::lstat(entry->path().c_str(), &info) == 0;
      if (isThere && S_ISDIR(info.st_mode)) {
        folders.push_back(entry->path());
      } else if (isThere && S_ISREG(info.st_mode) && entry->path().extension() == ".jsonl") {
        logs.push_back({.path = entry->path(),
                        .identity = {.device = info.st_dev,
                                     .inode = info.st_ino,
                                     .size = info.st_size,
                                     .modified = info.st_mtim}});
      }
      entry.increment(failure);
    }
  }
  const auto middle = logs.begin() + static_cast<std::ptrdiff_t>(std::min(newest, logs.size()));
  std::ranges::partial_sort(logs, middle, [](const Log &left, const Log &right) {
    const timespec &leftTime = left.identity.modified;
    const timespec &rightTime = right.identity.modified;
    // Codex puts the time of their beginning into the logs' names.
    return isLater(leftTime, rightTime) ||
           (!isLater(rightTime, leftTime) && left.path > right.path);
  });
  logs.erase(middle, logs.end());
  return logs;
}

std::optional<LiveRateLimit> CodexUsageReader::latest(const std::stop_token &stop) {
  const std::scoped_lock lock(m_mutex);
  const auto logs = newestLogs(
      QFile::encodeName(m_home.file(QStringLiteral(".codex/sessions"))).constData(), stop);
  std::erase_if(m_memory, [&logs](const auto &remembered) {
    return std::ranges::find(logs, remembered.first, &Log::path) == logs.end();
  });
  for (const Log &log : logs) {
    auto limit = said(log, stop);
    if (stop.stop_requested()) {
      return std::nullopt;
    }
    if (limit) {
      return limit;
    }
  }
  return std::nullopt;
}

std::optional<LiveRateLimit> CodexUsageReader::said(const Log &log, const std::stop_token &stop) {
  const auto known = m_memory.find(log.path);
  if (known != m_memory.end() && known->second.identity.isSame(log.identity)) {
    return known->second.limit;
  }
  const Descriptor file(log.path);
  struct stat info{};
  if (file.number() < 0 || ::fstat(file.number(), &info) != 0 || !S_ISREG(info.st_mode)) {
    return std::nullopt;
  }
  std::optional<LiveRateLimit> limit;
  BackwardLines lines(file.number(), info.st_size, marker);
  lines.each(
      [&limit](const QByteArray &line) {
        limit = parse(line);
        return limit.has_value();
      },
      stop);
  if (!stop.stop_requested()) {
    m_memory.insert_or_assign(log.path, Said{.identity = log.identity, .limit = limit});
  }
  return limit;
}

} // namespace morvo
