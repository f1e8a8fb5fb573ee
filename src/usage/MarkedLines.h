#pragma once

#include "usage/LogLine.h"
#include "usage/OpenLog.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string_view>

namespace morvo {

/// Reads a log from front to back and hands over the lines that hold a marker, but for those beyond
/// `LogLine::longest`. Holds no more memory than twice the longest line of a log and a block; what
/// a long line took is given back when the next log is read.
///
/// Not thread-safe; use one for many files.
class MarkedLines {
public:
  /// Bytes that may be read, though they mean nothing, behind a line that is handed over.
  static constexpr std::size_t padding = 64;
  static constexpr std::size_t standardBlock = std::size_t{256} << 10U;

  /// A place in a log up to which it has been read.
  struct Place {
    std::int64_t offset = 0;
    /// Whether the bytes before are the beginning of a line that is passed over.
    bool isInLongLine = false;

    bool operator==(const Place &) const = default;
  };

  /// `isWhole` tells whether the line has its line feed: what has none may still grow. The text is
  /// valid during the call.
  using Take = std::function<void(std::string_view line, bool isWhole)>;

  /// The block size and the length of the longest line are parameters for tests.
  explicit MarkedLines(std::string_view marker, std::size_t block = standardBlock,
                       std::size_t longest = LogLine::longest);

  /// Hands over the lines from `place` to the end that the log had when it was opened, or has by
  /// now if it has become shorter. The place to go on from when it has grown: behind the last line
  /// feed. Nothing when reading fails or `stop` is requested.
  [[nodiscard]] std::optional<Place> read(const OpenLog &log, Place place, const Take &take,
                                          const std::stop_token &stop);

private:
  void reserve(std::size_t size);
  /// The lines with the marker in the buffer from `begin` to `end`.
  void search(std::size_t begin, std::size_t end, const Take &take, bool isWhole) const;
  /// Takes in a block that lies behind the `m_used` bytes of an unfinished line.
  void digest(std::size_t count, std::int64_t position, Place &place, const Take &take);

  std::string_view m_marker;
  std::size_t m_block;
  std::size_t m_longest;
  std::size_t m_capacity = 0;
  /// Has room for that many bytes and the padding.
  QByteArray m_buffer;
  std::size_t m_used = 0;
};

} // namespace morvo
