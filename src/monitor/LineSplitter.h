#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

namespace morvo {

/// Cuts a stream of chunks at line feeds. Keeps at most one unfinished line, so a stream of any
/// length costs bounded memory. Confined to one thread.
class LineSplitter {
public:
  /// A line longer than this many bytes is dropped whole.
  static constexpr qsizetype longestLine = qsizetype{16} * 1024 * 1024;

  /// Hands each line that ends in `chunk` to `take`, in order, without its line feed; empty lines
  /// are left out. The bytes handed over live only during that call. Returns whether any line
  /// ended.
  bool feed(QByteArrayView chunk, const std::function<void(const QByteArray &)> &take);

  /// What followed the last line feed; empty for an unfinished line that is already too long.
  [[nodiscard]] const QByteArray &rest() const { return m_rest; }

private:
  void endLine(QByteArrayView end, const std::function<void(const QByteArray &)> &take);
  void keep(QByteArrayView part);

  QByteArray m_rest;
  bool m_tooLong = false;
};

} // namespace morvo
