#include "usage/MarkedLines.h"

#include <algorithm>
#include <cstring>

namespace morvo {

MarkedLines::MarkedLines(std::string_view marker, std::size_t block, std::size_t longest)
    : m_marker(marker), m_block(block), m_longest(longest) {}

void MarkedLines::reserve(std::size_t size) {
  if (size <= m_capacity) {
    return;
  }
  m_capacity = std::max(size, std::min(2 * m_capacity, m_longest + m_block));
  const std::size_t room = m_capacity + padding;
  m_buffer.resize(static_cast<qsizetype>(room));
}

void MarkedLines::search(std::size_t begin, std::size_t end, const Take &take, bool isWhole) const {
  LogLine::eachMarked({m_buffer.constData() + begin, end - begin}, m_marker,
                      [this, &take, isWhole](std::string_view line) {
                        if (line.size() <= m_longest) {
                          take(line, isWhole);
                        }
                      });
}

void MarkedLines::digest(std::size_t count, std::int64_t position, Place &place, const Take &take) {
  const char *const block = m_buffer.constData() + m_used;
  const auto *const last = static_cast<const char *>(::memrchr(block, '\n', count));
  if (last == nullptr) {
    m_used += count;
    if (place.isInLongLine || m_used > m_longest) {
      place = {.offset = position, .isInLongLine = true};
      m_used = 0;
    }
    return;
  }
  std::size_t begin = 0;
  if (place.isInLongLine) {
    const auto *const first = static_cast<const char *>(std::memchr(block, '\n', count));
    begin = static_cast<std::size_t>(first + 1 - block);
  }
  const auto end = static_cast<std::size_t>(last + 1 - m_buffer.constData());
  search(begin, end, take, true);
  const std::size_t rest = m_used + count - end;
  place = {.offset = position - static_cast<std::int64_t>(rest)};
  std::memmove(m_buffer.data(), m_buffer.constData() + end, rest);
  m_used = rest;
}

std::optional<MarkedLines::Place> MarkedLines::read(const OpenLog &log, Place place,
                                                    const Take &take, const std::stop_token &stop) {
  if (m_capacity > 2 * m_block) {
    // The last file had long lines; the next need not have.
    m_capacity = 0;
    m_buffer.clear();
  }
  m_used = 0;
  std::int64_t position = place.offset;
  while (position < log.identity().size) {
    const auto wanted = static_cast<std::size_t>(
        std::min(static_cast<std::int64_t>(m_block), log.identity().size - position));
    reserve(m_used + wanted);
    const auto count = log.read(position, m_buffer.data() + m_used, wanted);
    if (!count || stop.stop_requested()) {
      return std::nullopt;
    }
    position += static_cast<std::int64_t>(*count);
    digest(*count, position, place, take);
    if (*count < wanted) {
      break;
    }
  }
  search(0, m_used, take, false);
  return place;
}

} // namespace morvo
