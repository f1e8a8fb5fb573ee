#include "usage/JsonExcerpt.h"

#include <algorithm>

namespace morvo {
namespace {

/// Longer names are none that anybody wants; they are cut.
constexpr qsizetype longestName = 256;

/// Some editors put it in front of UTF-8.
constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

} // namespace

void JsonExcerpt::feed(QByteArrayView bytes) {
  for (qsizetype i = 0; i < bytes.size() && m_place != Place::broken; ++i) {
    if (m_place == Place::value && !m_isWanted && m_nesting.passesOver()) {
      while (i + 1 < bytes.size() && bytes[i] != '"' && bytes[i] != '\\') {
        ++i;
      }
    }
    take(bytes[i]);
  }
}

QByteArray JsonExcerpt::text() const {
  return m_place == Place::behind ? '{' + m_excerpt + '}' : QByteArray();
}

void JsonExcerpt::take(char byte) {
  if (m_place == Place::value) {
    takeValue(byte);
    return;
  }
  if (m_place == Place::name) {
    m_nesting.take(byte);
    if (!m_nesting.isInText()) {
      m_place = Place::colon;
    } else if (m_name.size() < longestName) {
      m_name.append(byte);
    }
    return;
  }
  if (m_place == Place::before && m_marks < byteOrderMark.size() &&
      byte == byteOrderMark[m_marks]) {
    ++m_marks;
  } else if (!JsonNesting::isSpace(byte)) {
    takeOutside(byte);
  }
}

void JsonExcerpt::takeOutside(char byte) {
  m_nesting.take(byte);
  if (m_place == Place::before && byte == '{') {
    m_place = Place::first;
  } else if (m_place == Place::first && byte == '}') {
    m_place = Place::behind;
  } else if ((m_place == Place::first || m_place == Place::next) && byte == '"') {
    m_place = Place::name;
    m_name.clear();
  } else if (m_place == Place::colon && byte == ':') {
    beginValue();
  } else {
    m_place = Place::broken;
  }
}

void JsonExcerpt::beginValue() {
  m_place = Place::value;
  // One that is written with escapes may be one of them.
  m_isWanted = m_name.size() < longestName &&
               (m_name.contains('\\') || std::ranges::find(m_names, m_name) != m_names.end());
  if (m_isWanted) {
    m_excerpt.append(m_excerpt.isEmpty() ? "\"" : ",\"").append(m_name).append("\":");
  }
}

void JsonExcerpt::takeValue(char byte) {
  const bool mayEnd = m_nesting.depth() == 1 && !m_nesting.isInText();
  if (mayEnd && byte == ',') {
    m_place = Place::next;
    return;
  }
  m_nesting.take(byte);
  if (m_nesting.depth() == 0) {
    m_place = byte == '}' ? Place::behind : Place::broken;
    return;
  }
  if (m_isWanted) {
    m_excerpt.append(byte);
    if (m_excerpt.size() > longest) {
      m_place = Place::broken;
    }
  }
}

} // namespace morvo
