#include "usage/BackwardLines.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace morvo {

BackwardLines::BackwardLines(int descriptor, qint64 size, QByteArray marker, qsizetype block,
                             qsizetype longest)
    : m_descriptor(descriptor), m_position(size), m_marker(std::move(marker)), m_block(block),
      m_longest(longest) {}

std::optional<QByteArray> BackwardLines::before(qsizetype length) const {
  QByteArray text(std::min<qint64>(length, m_position - m_begin), Qt::Uninitialized);
  qsizetype done = 0;
  while (done < text.size()) {
    const ssize_t count =
        ::pread(m_descriptor, text.data() + done, static_cast<std::size_t>(text.size() - done),
                m_position - text.size() + done);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      // It has become shorter, or its disk fails.
      return std::nullopt;
    }
    done += count;
  }
  return text;
}

bool BackwardLines::search(QByteArrayView text,
                           const std::function<bool(const QByteArray &)> &take) const {
  // Found from the front, which is what the C library does fast.
  std::vector<std::string_view> lines;
  const std::string_view marker(m_marker.constData(), static_cast<std::size_t>(m_marker.size()));
  LogLine::eachMarked({text.begin(), text.end()}, marker,
                      [&lines](std::string_view line) { lines.push_back(line); });
  return std::ranges::any_of(lines.rbegin(), lines.rend(), [this, &take](std::string_view line) {
    const auto length = static_cast<qsizetype>(line.size());
    return length <= m_longest && take(QByteArray(line.begin(), length));
  });
}

bool BackwardLines::passLine(const std::stop_token &stop) {
  while (m_position > m_begin) {
    const auto text = before(m_block);
    if (!text || stop.stop_requested()) {
      return false;
    }
    const qsizetype lineFeed = text->lastIndexOf('\n');
    m_position -= text->size() - std::max<qsizetype>(lineFeed, 0);
    if (lineFeed >= 0) {
      break;
    }
  }
  return true;
}

bool BackwardLines::each(const std::function<bool(const QByteArray &)> &take,
                         const std::stop_token &stop) {
  qsizetype length = m_block;
  while (m_position > m_begin) {
    const auto text = before(length);
    if (!text || stop.stop_requested()) {
      return false;
    }
    const qint64 textBegin = m_position - text->size();
    const bool isFirst = textBegin == m_begin;
    const qsizetype lineFeed = isFirst ? -1 : text->indexOf('\n');
    if (!isFirst && lineFeed < 0) {
      // A line is read again from further ahead until all of it is in one piece: twice as far each
      // time, so that this costs no more than the line's length again.
      if (length <= m_longest) {
        length = std::min(2 * length, m_longest + 1);
        continue;
      }
      m_position = textBegin;
      if (!passLine(stop)) {
        return false;
      }
    } else if (search(QByteArrayView(*text).sliced(lineFeed + 1), take)) {
      return true;
    } else {
      m_position = textBegin + std::max<qsizetype>(lineFeed, 0);
    }
    length = m_block;
  }
  return true;
}

} // namespace morvo
