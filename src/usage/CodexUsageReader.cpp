#include "usage/CodexUsageReader.h"

#include "base/Json.h"

#include <QFile>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace morvo {
namespace {

/// How many of the logs are looked at.
constexpr std::size_t newest = 12;

/// Beyond this many seconds from 1970 no calendar tells a date.
constexpr double farthestSecond = 8.64e12;

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

/// Those that were changed last, the newest first.
std::vector<LogFile> newestLogs(const HomeFolder &home, const std::stop_token &stop) {
  static constexpr std::array<std::string_view, 1> extensions{"jsonl"};
  auto logs = LogFile::changedSince(
      QFile::encodeName(home.file(QStringLiteral(".codex/sessions"))).toStdString(), extensions,
      WallTime::min(), stop);
  const auto middle = logs.begin() + static_cast<std::ptrdiff_t>(std::min(newest, logs.size()));
  std::ranges::partial_sort(logs, middle, std::ranges::greater(), [](const LogFile &log) {
    // Codex puts the time of their beginning into the logs' names.
    return std::tie(log.identity.modified, log.path);
  });
  logs.erase(middle, logs.end());
  return logs;
}

} // namespace

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

std::optional<LiveRateLimit> CodexUsageReader::latest(const std::stop_token &stop) {
  const std::scoped_lock lock(m_mutex);
  const auto logs = newestLogs(m_home, stop);
  std::erase_if(m_memory, [&logs](const auto &remembered) {
    return std::ranges::find(logs, remembered.first, &LogFile::path) == logs.end();
  });
  Log::Tools tools;
  for (const LogFile &log : logs) {
    Log &known = m_memory[log.path];
    if (!known.knows(log.identity)) {
      known.update(log.path, {}, tools, stop);
    }
    if (stop.stop_requested()) {
      return std::nullopt;
    }
    if (known.last()) {
      return known.last();
    }
  }
  return std::nullopt;
}

} // namespace morvo
