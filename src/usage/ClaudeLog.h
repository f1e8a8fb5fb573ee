#pragma once

#include "usage/ClaudeLine.h"
#include "usage/MarkedLines.h"
#include "usage/TokenEvents.h"

#include <cstddef>

namespace morvo {

/// What is remembered of one session log of Claude Code: its events, and up to where they have been
/// read, so that a log that has grown is read from there on.
///
/// Where the log was changed otherwise it is read anew. A change in the middle of a log that has
/// also grown, with the first and the last of the known bytes as they were, goes unnoticed.
class ClaudeLog {
public:
  /// The tools of reading, one set a thread.
  struct Tools {
    MarkedLines lines{ClaudeLine::marker};
    ClaudeLine line;
  };

  /// Whether the events since that time are known while the log is this one.
  [[nodiscard]] bool knows(const FileIdentity &identity, WallTime since) const;
  /// Bytes that an update would read, as far as can be told from outside.
  [[nodiscard]] std::int64_t bytesMissing(const FileIdentity &identity, WallTime since) const;
  /// Reads what is new, keeping events since that time, and forgets everything when that fails.
  void update(const std::string &path, WallTime since, Tools &tools, const std::stop_token &stop);
  /// How many events are kept.
  [[nodiscard]] std::size_t size() const { return m_events.size() + (m_unfinished ? 1 : 0); }
  /// Puts the events since that time behind the others.
  void append(WallTime since, TokenEvents &events) const;

private:
  [[nodiscard]] bool canContinue(const FileIdentity &identity, WallTime since) const;
  [[nodiscard]] bool readOn(const OpenLog &log, WallTime since, Tools &tools,
                            const std::stop_token &stop);

  FileIdentity m_identity;
  MarkedLines::Place m_place;
  std::uint64_t m_fingerprint = 0; ///< Of what is before the place.
  WallTime m_since;                ///< Older events are not kept.
  WallTime m_oldest = WallTime::max();
  TokenEvents m_events;
  /// The event of a last line without its line feed, which may still change.
  std::optional<TokenEvent> m_unfinished;
};

} // namespace morvo
