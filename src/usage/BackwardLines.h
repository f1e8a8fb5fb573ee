#pragma once

#include "usage/LogLine.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <stop_token>

namespace morvo {

/// Reads the lines of a file that hold a marker, from the last to the first, without reading more
/// of the file than it takes. Passes over lines beyond `LogLine::longest`; holds no more memory
/// than the longest line of the file or a block, and a copy of a line.
class BackwardLines {
public:
  static constexpr qsizetype standardBlock = qsizetype{256} << 10U;

  /// `descriptor` is that of a regular file and stays the caller's; `size` is how much of it is
  /// looked at. The block size and the length of the longest line are parameters for tests.
  BackwardLines(int descriptor, qint64 size, QByteArray marker, qsizetype block = standardBlock,
                qsizetype longest = LogLine::longest);

  /// Looks at nothing before that offset, where a line begins.
  void setBegin(qint64 begin) { m_begin = begin; }

  /// Hands over each line with the marker, without its line feed, until `take` gives true or the
  /// beginning is reached. False when reading fails, or `stop` is requested, before that.
  [[nodiscard]] bool each(const std::function<bool(const QByteArray &)> &take,
                          const std::stop_token &stop);

private:
  /// So many bytes before the place, or as many as there are; nothing when reading fails.
  [[nodiscard]] std::optional<QByteArray> before(qsizetype length) const;
  /// Goes back to the end of the line before the one in which the place is.
  [[nodiscard]] bool passLine(const std::stop_token &stop);
  /// The lines with the marker in `text`, the last first. True when `take` was satisfied.
  bool search(QByteArrayView text, const std::function<bool(const QByteArray &)> &take) const;

  int m_descriptor;
  /// The end of a line; what is behind it has been looked at.
  qint64 m_position;
  qint64 m_begin = 0;
  QByteArray m_marker;
  qsizetype m_block;
  qsizetype m_longest;
};

} // namespace morvo
