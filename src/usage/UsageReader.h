#pragma once

#include "base/Clock.h"
#include "platform/HomeFolder.h"
#include "usage/TokenEvents.h"

#include <memory>
#include <stop_token>

namespace morvo {

/// Turns the session logs of Claude Code and Codex into token events. It remembers what each log
/// said: one that has not changed is not read again, and of one that has grown only what is new is
/// read. What it answers is what a first reading of everything would answer.
///
/// Blocks while it reads, so not for the main thread. Thread-safe; calls wait for each other. What
/// cannot be read or understood counts nothing. Where there is much to read a second thread helps,
/// with the priority of the caller's. When `stop` is requested the answer is incomplete.
class UsageReader {
public:
  /// `clock` must outlive the reader.
  UsageReader(HomeFolder home, const Clock &clock);
  UsageReader(const UsageReader &) = delete;
  UsageReader &operator=(const UsageReader &) = delete;
  ~UsageReader();

  /// One event for each line of a reply with its use, copies included, not older than that.
  [[nodiscard]] TokenEvents claudeEvents(double sinceHours, const std::stop_token &stop = {});

  /// One event for each session that was written to since, with the time of its last change.
  [[nodiscard]] TokenEvents codexEvents(double sinceHours, const std::stop_token &stop = {});

private:
  class Memory;
  std::unique_ptr<Memory> m_memory;
};

} // namespace morvo
