#pragma once

#include "platform/HomeFolder.h"
#include "usage/LastRecordLog.h"
#include "usage/LiveRateLimit.h"
#include "usage/LogFile.h"

#include <QByteArray>

#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace morvo {

/// Reads the rate limits that Codex writes into its session logs. It remembers what each of the
/// logs said: one that has not changed is not read again, and of one that has grown only what is
/// new is read.
///
/// Thread-safe. Reads files, so not for the main thread.
class CodexUsageReader {
public:
  explicit CodexUsageReader(HomeFolder home);
  CodexUsageReader(const CodexUsageReader &) = delete;
  CodexUsageReader &operator=(const CodexUsageReader &) = delete;
  ~CodexUsageReader();

  /// The last record of the newest log that has one, among the twelve that were changed last. A log
  /// is read from its end. What cannot be read, and lines beyond `LogLine::longest`, count as
  /// nothing said. Nothing when `stop` was requested.
  [[nodiscard]] std::optional<LiveRateLimit> latest(const std::stop_token &stop = {});

  /// The record in one line of a log.
  [[nodiscard]] static std::optional<LiveRateLimit> parse(const QByteArray &line);

private:
  /// Every line with a record holds it.
  static inline const QByteArray marker = QByteArrayLiteral("\"rate_limits\"");

  using Log = LastRecordLog<marker, parse>;

  HomeFolder m_home;
  std::mutex m_mutex;
  /// Of the twelve logs of the last look.
  std::map<std::string, Log> m_memory;
};

} // namespace morvo
