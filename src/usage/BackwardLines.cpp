#include "usage/BackwardLines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>
#include <vector>

namespace morvo {

BackwardLines::BackwardLines(int descriptor, qint64 size, QByteArray marker, qsizetype block)
    : m_descriptor(descriptor), m_position(size), m_marker(std::move(marker)), m_block(block) {}

QByteArray BackwardLines::previousBlock() {
  const qsizetype length = std::min<qint64>(m_block, m_position - m_begin);
  QByteArray block(length, Qt::Uninitialized);
  qsizetype done = 0;
  while (done < length) {
    const ssize_t count =
        ::pread(m_descriptor, block.data() + done, static_cast<std::size_t>(length - done),
                m_position - length + done);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      // It has become shorter, or its disk fails.
      return {};
    }
    done += count;
  }
  m_position -= length;
  return block;
}

bool BackwardLines::search(QByteArrayView text,
                           const std::function<bool(const QByteArray &)> &take) const {
  // Found from the front, which is what the C library does fast.
  std::vector<QByteArrayView> lines;
  const char *const end = text.data() + text.size();
  const char *from = text.data();
  while (from < end) {
    const auto *const hit = static_cast<const char *>(
        ::memmem(from, static_cast<std::size_t>(end - from), m_marker.constData(),
                 static_cast<std::size_t>(m_marker.size())));
    if (hit == nullptr) {
      break;
    }
    const auto *const before =
        static_cast<const char *>(::memrchr(from, '\n', static_cast<std::size_t>(hit - from)));
    const auto *const after =
        static_cast<const char *>(std::memchr(hit, '\n', static_cast<std::size_t>(end - hit)));
    const char *const lineBegin = before == nullptr ? from : before + 1;
    const char *const lineEnd = after == nullptr ? end : after;
    lines.emplace_back(lineBegin, lineEnd);
    from = lineEnd + 1;
  }
  return std::ranges::any_of(lines.rbegin(), lines.rend(), [&take](QByteArrayView line) {
    return line.size() <= longestLine && take(line.toByteArray());
  });
}

void BackwardLines::each(const std::function<bool(const QByteArray &)> &take,
                         const std::stop_token &stop) {
  // The part of a line that has been read, while its beginning has not.
  QByteArray pending;
  bool isTooLong = false;
  while (m_position > m_begin && !stop.stop_requested()) {
    QByteArray text = previousBlock();
    if (text.isEmpty()) {
      return;
    }
    const qsizetype lineFeed = text.indexOf('\n');
    if (lineFeed < 0 && m_position > m_begin) {
      isTooLong = isTooLong || pending.size() + text.size() > longestLine;
      pending = isTooLong ? QByteArray() : text + pending;
      continue;
    }
    if (isTooLong) {
      // Its beginning is in this block; nothing of it is of use.
      text.truncate(text.lastIndexOf('\n') + 1);
    }
    text += pending;
    isTooLong = false;
    const qsizetype complete = m_position > m_begin ? lineFeed + 1 : 0;
    if (search(QByteArrayView(text).sliced(complete), take)) {
      return;
    }
    text.truncate(complete == 0 ? 0 : lineFeed);
    pending = std::move(text);
  }
}

} // namespace morvo
