#include "usage/UsageReader.h"

#include "usage/ClaudeLog.h"
#include "usage/CodexLine.h"
#include "usage/LastRecordLog.h"
#include "usage/LogMemory.h"
#include "usage/LogTime.h"
#include "usage/TokenCount.h"
#include "usage/TokenPrice.h"

#include <QFile>

#include <array>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace morvo {
namespace {

constexpr std::array<std::string_view, 1> extensions{"jsonl"};

/// The model that Codex's sessions are reckoned by.
constexpr std::string_view codexModel = "gpt-5";

/// Of a session of Codex the last totals count.
using CodexLog = LastRecordLog<CodexLine::marker, CodexLine::totals>;

} // namespace

class UsageReader::Memory {
public:
  Memory(HomeFolder home, const Clock &clock) : m_home(std::move(home)), m_clock(&clock) {}

  TokenEvents claudeEvents(double sinceHours, const std::stop_token &stop) {
    const std::scoped_lock lock(m_mutex);
    const WallTime since = LogTime::hoursBefore(m_clock->now(), sinceHours);
    const auto files = recentFiles(QStringLiteral(".claude/projects"), since, stop);
    m_claude.update(files, since, stop);
    std::size_t most = 0;
    for (const LogFile &file : files) {
      most += m_claude.of(file).size();
    }
    TokenEvents events;
    events.reserve(most);
    for (const LogFile &file : files) {
      m_claude.of(file).append(since, events);
    }
    return events;
  }

  TokenEvents codexEvents(double sinceHours, const std::stop_token &stop) {
    const std::scoped_lock lock(m_mutex);
    const WallTime since = LogTime::hoursBefore(m_clock->now(), sinceHours);
    const auto files = recentFiles(QStringLiteral(".codex/sessions"), since, stop);
    m_codex.update(files, since, stop);
    TokenEvents events;
    for (const LogFile &file : files) {
      const auto &totals = m_codex.of(file).last();
      if (totals && totals->total > 0) {
        events.add(sessionEvent(*totals, file.identity.modifiedAt()));
      }
    }
    return events;
  }

private:
  [[nodiscard]] std::vector<LogFile> recentFiles(const QString &folder, WallTime since,
                                                 const std::stop_token &stop) const {
    return LogFile::changedSince(QFile::encodeName(m_home.file(folder)).toStdString(), extensions,
                                 since, stop);
  }

  static TokenEvent sessionEvent(const CodexLine::Totals &totals, WallTime time) {
    const std::int64_t billable =
        std::max<std::int64_t>(TokenCount::difference(totals.total, totals.cached), 0);
    return {.ts = time,
            .billable = billable,
            .cacheRead = totals.cached,
            .cost = TokenPrice::ofModel(codexModel).ofMixed(billable),
            // The whole session carries one time.
            .burnable = false};
  }

  std::mutex m_mutex;
  HomeFolder m_home;
  const Clock *m_clock;
  LogMemory<ClaudeLog> m_claude;
  LogMemory<CodexLog> m_codex;
};

UsageReader::UsageReader(HomeFolder home, const Clock &clock)
    : m_memory(std::make_unique<Memory>(std::move(home), clock)) {}

UsageReader::~UsageReader() = default;

TokenEvents UsageReader::claudeEvents(double sinceHours, const std::stop_token &stop) {
  return m_memory->claudeEvents(sinceHours, stop);
}

TokenEvents UsageReader::codexEvents(double sinceHours, const std::stop_token &stop) {
  return m_memory->codexEvents(sinceHours, stop);
}

} // namespace morvo
