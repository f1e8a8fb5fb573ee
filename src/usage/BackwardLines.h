#pragma once

#include <QByteArray>

#include <functional>
#include <stop_token>

namespace morvo {

/// Reads the lines of a file that hold a marker, from the last to the first, without reading more
/// of the file than it takes. Holds no more memory than one block and one line.
class BackwardLines {
public:
  /// Longer lines are passed over.
  static constexpr qsizetype longestLine = qsizetype{4} << 20U;
  static constexpr qsizetype standardBlock = qsizetype{256} << 10U;

  /// `descriptor` is that of a regular file and stays the caller's; `size` is how much of it is
  /// looked at. The block size is a parameter for tests.
  BackwardLines(int descriptor, qint64 size, QByteArray marker, qsizetype block = standardBlock);

  /// Looks at nothing before that offset, where a line begins.
  void setBegin(qint64 begin) { m_begin = begin; }

  /// Hands over each line with the marker, without its line feed, until `take` gives true, the
  /// beginning is reached, reading fails or `stop` is requested.
  void each(const std::function<bool(const QByteArray &)> &take, const std::stop_token &stop);

private:
  /// The block before the one read last; empty when that fails.
  QByteArray previousBlock();
  /// The lines with the marker in `text`, the last first. True when `take` was satisfied.
  bool search(QByteArrayView text, const std::function<bool(const QByteArray &)> &take) const;

  int m_descriptor;
  qint64 m_position;
  qint64 m_begin = 0;
  QByteArray m_marker;
  qsizetype m_block;
};

} // namespace morvo
