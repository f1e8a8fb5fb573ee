#pragma once

#include "base/Clock.h"
#include "platform/HomeFolder.h"
#include "usage/FileIdentity.h"
#include "usage/TokenEvents.h"

#include <QJsonObject>
#include <QString>

#include <map>
#include <mutex>
#include <stop_token>
#include <string>

namespace morvo {

/// Reads token use out of logs of a shape nobody has told us: whatever JSON lines or JSON arrays
/// with counts in the usual places lie below a folder. It remembers the sums of each file, so that
/// one that has not changed is not read again.
///
/// Blocks while it reads. Thread-safe. What cannot be read or understood counts nothing.
class GenericUsageReader {
public:
  /// What one record says.
  struct Tokens {
    std::int64_t billable = 0;
    std::int64_t cacheRead = 0;
    bool empty = false; ///< The record has a place for counts, but nothing in it.

    bool operator==(const Tokens &) const = default;
  };

  /// `clock` must outlive the reader.
  GenericUsageReader(HomeFolder home, const Clock &clock);

  /// One event for each of the newest files below the home's folder `under` that burned something;
  /// `modelHint` names the model that their cost is reckoned by.
  [[nodiscard]] TokenEvents events(const QString &under, double sinceHours,
                                   const QString &modelHint, const std::stop_token &stop = {});

  [[nodiscard]] static Tokens extractTokens(const QJsonObject &record);

private:
  struct Sums {
    FileIdentity identity;
    std::int64_t billable = 0;
    std::int64_t cacheRead = 0;
  };

  HomeFolder m_home;
  const Clock *m_clock;
  std::mutex m_mutex;
  /// By folder, then by file.
  std::map<QString, std::map<std::string, Sums>> m_memory;
};

} // namespace morvo
