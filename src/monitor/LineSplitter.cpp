#include "monitor/LineSplitter.h"

#include <utility>

namespace morvo {

bool LineSplitter::feed(QByteArrayView chunk, const std::function<void(const QByteArray &)> &take) {
  bool ended = false;
  for (;;) {
    const qsizetype end = chunk.indexOf('\n');
    if (end < 0) {
      keep(chunk);
      return ended;
    }
    endLine(chunk.first(end), take);
    chunk = chunk.sliced(end + 1);
    ended = true;
  }
}

void LineSplitter::endLine(QByteArrayView end,
                           const std::function<void(const QByteArray &)> &take) {
  if (m_rest.isEmpty() && !m_tooLong) {
    // The common case, a line within one chunk, is not copied.
    if (!end.isEmpty() && end.size() <= longestLine) {
      take(QByteArray::fromRawData(end.data(), end.size()));
    }
    return;
  }
  keep(end);
  const QByteArray line = std::exchange(m_rest, {});
  if (!std::exchange(m_tooLong, false)) {
    take(line);
  }
}

void LineSplitter::keep(QByteArrayView part) {
  if (m_tooLong || m_rest.size() + part.size() > longestLine) {
    m_tooLong = true;
    m_rest = {};
    return;
  }
  m_rest.append(part);
}

} // namespace morvo
