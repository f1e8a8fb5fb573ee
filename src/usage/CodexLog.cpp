#include "usage/CodexLog.h"

#include "usage/BackwardLines.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace morvo {
namespace {

/// Totals stand near the end, so a small block finds them.
constexpr qsizetype block = qsizetype{64} << 10U;
constexpr auto longest = static_cast<std::int64_t>(MarkedLines::longestLine);

/// The offset behind the last line feed between the two; `begin` when there is none. Nothing when
/// reading fails.
std::optional<std::int64_t> behindLastLineFeed(const OpenLog &log, std::int64_t begin,
                                               std::int64_t end) {
  std::vector<char> bytes(block);
  while (end > begin) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(block, end - begin));
    end -= static_cast<std::int64_t>(count);
    if (log.read(end, bytes.data(), count) != count) {
      return std::nullopt;
    }
    const auto *const found = static_cast<const char *>(::memrchr(bytes.data(), '\n', count));
    if (found != nullptr) {
      return end + (found - bytes.data()) + 1;
    }
  }
  return begin;
}

/// The offset behind the first line feed between the two; nothing when there is none or reading
/// fails.
std::optional<std::int64_t> behindFirstLineFeed(const OpenLog &log, std::int64_t begin,
                                                std::int64_t end) {
  std::vector<char> bytes(block);
  while (begin < end) {
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(block, end - begin));
    if (log.read(begin, bytes.data(), count) != count) {
      return std::nullopt;
    }
    const auto *const found = static_cast<const char *>(std::memchr(bytes.data(), '\n', count));
    if (found != nullptr) {
      return begin + (found - bytes.data()) + 1;
    }
    begin += static_cast<std::int64_t>(count);
  }
  return std::nullopt;
}

/// The last totals told between the two offsets, each of which is the beginning or end of a line.
std::optional<CodexLine::Totals> lastTotals(const OpenLog &log, std::int64_t begin,
                                            std::int64_t end, const std::stop_token &stop) {
  std::optional<CodexLine::Totals> totals;
  BackwardLines lines(log.descriptor(), end, CodexLine::marker, block);
  lines.setBegin(begin);
  lines.each(
      [&totals](const QByteArray &line) {
        totals = CodexLine::totals(line);
        return totals.has_value();
      },
      stop);
  return totals;
}

} // namespace

bool CodexLog::knows(const FileIdentity &identity, WallTime /*since*/) const {
  return m_identity == identity;
}

std::int64_t CodexLog::bytesMissing(const FileIdentity &identity, WallTime /*since*/) const {
  return m_identity.isSameFile(identity) && identity.size > m_identity.size
             ? identity.size - m_place.offset
             : identity.size;
}

void CodexLog::update(const std::string &path, WallTime /*since*/, Tools & /*tools*/,
                      const std::stop_token &stop) {
  const auto log = OpenLog::at(path);
  const bool hasGrown =
      log && m_identity.isSameFile(log->identity()) && log->identity().size > m_identity.size;
  if (!hasGrown || log->fingerprint(m_place.offset) != m_fingerprint) {
    *this = {};
  }
  if (log && !readOn(*log, stop)) {
    *this = {};
  }
}

bool CodexLog::readOn(const OpenLog &log, const std::stop_token &stop) {
  const std::int64_t end = log.identity().size;
  const auto begin = m_place.isInLongLine ? behindFirstLineFeed(log, m_place.offset, end)
                                          : std::optional(m_place.offset);
  if (begin && !readLines(log, *begin, stop)) {
    return false;
  }
  if (!begin) {
    m_place.offset = end;
  }
  const auto fingerprint = log.fingerprint(m_place.offset);
  if (!fingerprint || stop.stop_requested()) {
    return false;
  }
  m_fingerprint = *fingerprint;
  m_identity = log.identity();
  return true;
}

bool CodexLog::readLines(const OpenLog &log, std::int64_t begin, const std::stop_token &stop) {
  const std::int64_t end = log.identity().size;
  const auto settledEnd = behindLastLineFeed(log, begin, end);
  if (!settledEnd) {
    return false;
  }
  if (const auto settled = lastTotals(log, begin, *settledEnd, stop)) {
    m_settled = settled;
  }
  const bool isInLongLine = end - *settledEnd > longest;
  const auto unfinished = isInLongLine ? std::nullopt : lastTotals(log, *settledEnd, end, stop);
  m_totals = unfinished ? unfinished : m_settled;
  m_place = {.offset = isInLongLine ? end : *settledEnd, .isInLongLine = isInLongLine};
  return true;
}

} // namespace morvo
