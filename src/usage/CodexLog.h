#pragma once

#include "usage/CodexLine.h"
#include "usage/MarkedLines.h"
#include "usage/OpenLog.h"

#include <optional>
#include <stop_token>

namespace morvo {

/// What is remembered of one session log of Codex: its last totals. They are sought from the end
/// of the log, down to what is known already. Where the log was changed otherwise than by growing
/// it is read anew, with the limits that `ClaudeLog` tells of.
class CodexLog {
public:
  struct Tools {};

  [[nodiscard]] bool knows(const FileIdentity &identity, WallTime since) const;
  [[nodiscard]] std::int64_t bytesMissing(const FileIdentity &identity, WallTime since) const;
  void update(const std::string &path, WallTime since, Tools &tools, const std::stop_token &stop);
  /// The last totals that the log tells.
  [[nodiscard]] const std::optional<CodexLine::Totals> &totals() const { return m_totals; }

private:
  [[nodiscard]] bool readOn(const OpenLog &log, const std::stop_token &stop);
  /// Reads from the beginning of a line.
  [[nodiscard]] bool readLines(const OpenLog &log, std::int64_t begin, const std::stop_token &stop);

  FileIdentity m_identity;
  MarkedLines::Place m_place;      ///< Behind the last line feed.
  std::uint64_t m_fingerprint = 0; ///< Of what is before the place.
  /// Those before the place.
  std::optional<CodexLine::Totals> m_settled;
  /// Those with a last line that has no line feed.
  std::optional<CodexLine::Totals> m_totals;
};

} // namespace morvo
