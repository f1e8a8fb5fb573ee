#pragma once

#include "usage/BackwardLines.h"
#include "usage/LineFeeds.h"
#include "usage/LogLine.h"
#include "usage/OpenLog.h"

#include <QByteArray>

#include <optional>
#include <stop_token>
#include <string>
#include <type_traits>

namespace morvo {

/// What is remembered of a log of which only the last record of some kind counts. It is sought from
/// the end of the log, down to what is known already: so of a log that has grown only what is new
/// is read, whether or not there was a record before. Where the log was changed otherwise than by
/// growing it is read anew, with the limits that `ClaudeLog` tells of. When reading fails nothing
/// is remembered.
///
/// `marker` is in every line with a record; `read` takes a line and gives its record, if any.
template <const QByteArray &marker, auto read> class LastRecordLog {
public:
  using Record = typename std::invoke_result_t<decltype(read), const QByteArray &>::value_type;
  struct Tools {};

  /// Whether it is known what the log says while it is this one.
  [[nodiscard]] bool knows(const FileIdentity &identity, WallTime /*since*/ = {}) const {
    return m_identity == identity;
  }
  /// Bytes that an update would read at most, as far as can be told from outside.
  [[nodiscard]] std::int64_t bytesMissing(const FileIdentity &identity,
                                          WallTime /*since*/ = {}) const {
    return hasGrownTo(identity) ? identity.size - m_begin : identity.size;
  }

  void update(const std::string &path, WallTime /*since*/, Tools & /*tools*/,
              const std::stop_token &stop) {
    const auto log = OpenLog::at(path);
    if (!log || !hasGrownTo(log->identity()) || log->fingerprint(m_begin) != m_fingerprint) {
      *this = {};
    }
    if (log && !readOn(*log, stop)) {
      *this = {};
    }
  }

  /// The last record of the log.
  [[nodiscard]] const std::optional<Record> &last() const { return m_last; }

private:
  /// A record stands near the end, mostly, so a small block finds it.
  static constexpr qsizetype block = qsizetype{64} << 10U;

  [[nodiscard]] bool hasGrownTo(const FileIdentity &identity) const {
    return m_identity.isSameFile(identity) && identity.size > m_identity.size;
  }

  [[nodiscard]] bool readOn(const OpenLog &log, const std::stop_token &stop) {
    const std::int64_t end = log.identity().size;
    if (!leaveLongLine(log, end) || (!m_isInLongLine && !readLines(log, end, stop))) {
      return false;
    }
    const auto fingerprint = log.fingerprint(m_begin);
    m_fingerprint = fingerprint.value_or(0);
    m_identity = log.identity();
    return fingerprint.has_value();
  }

  /// Goes on to the end of the line that is passed over, or of the log. False when reading fails.
  [[nodiscard]] bool leaveLongLine(const OpenLog &log, std::int64_t end) {
    if (m_isInLongLine) {
      const auto begin = LineFeeds::behindFirst(log, m_begin, end);
      if (!begin) {
        return false;
      }
      m_isInLongLine = *begin == m_begin;
      m_begin = m_isInLongLine ? end : *begin;
    }
    return true;
  }

  /// Reads from the beginning of a line. False when that fails or was stopped.
  [[nodiscard]] bool readLines(const OpenLog &log, std::int64_t end, const std::stop_token &stop) {
    const auto settledEnd = LineFeeds::behindLast(log, m_begin, end);
    if (!settledEnd || !seek(log, m_begin, *settledEnd, m_settled, stop)) {
      return false;
    }
    m_last = m_settled;
    m_isInLongLine = end - *settledEnd > static_cast<std::int64_t>(LogLine::longest);
    m_begin = m_isInLongLine ? end : *settledEnd;
    return m_isInLongLine || seek(log, m_begin, end, m_last, stop);
  }

  /// Puts the last record between the two offsets, each of which is the beginning or end of a line,
  /// in the place of `record`, if there is one. False when reading fails or was stopped.
  [[nodiscard]] static bool seek(const OpenLog &log, std::int64_t begin, std::int64_t end,
                                 std::optional<Record> &record, const std::stop_token &stop) {
    BackwardLines lines(log.descriptor(), end, marker, block);
    lines.setBegin(begin);
    const auto take = [&record](const QByteArray &line) {
      auto found = read(line);
      const bool isRecord = found.has_value();
      if (isRecord) {
        record = std::move(found);
      }
      return isRecord;
    };
    return lines.each(take, stop) && !stop.stop_requested();
  }

  FileIdentity m_identity;
  std::int64_t m_begin = 0; ///< Where to go on: behind the last line feed.
  /// Whether it lies in a line that is passed over instead.
  bool m_isInLongLine = false;
  std::uint64_t m_fingerprint = 0; ///< Of what is before the place to go on.
  /// The last before that place.
  std::optional<Record> m_settled;
  /// With a last line that has no line feed and may still change.
  std::optional<Record> m_last;
};

} // namespace morvo
