#include "usage/JsonArrayText.h"

#include <utility>

namespace morvo {

JsonArrayText::JsonArrayText(Take take, qsizetype longest)
    : m_take(std::move(take)), m_longest(longest) {}

bool JsonArrayText::feed(std::string_view bytes) {
  // Where the part of the present object in these bytes begins.
  std::size_t begin = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (m_place != Place::object) {
      if (!outside(bytes[i])) {
        return false;
      }
      begin = i;
      continue;
    }
    if (inside(bytes[i])) {
      keep(bytes.substr(begin, i + 1 - begin));
      if (!m_isTooLong && !m_take(m_object)) {
        return false;
      }
      m_object.clear();
      m_isTooLong = false;
    }
  }
  if (m_place == Place::object) {
    keep(bytes.substr(begin));
  }
  return true;
}

void JsonArrayText::keep(std::string_view bytes) {
  m_isTooLong = m_isTooLong || m_object.size() + static_cast<qsizetype>(bytes.size()) > m_longest;
  if (m_isTooLong) {
    m_object.clear();
  } else {
    m_object.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
  }
}

bool JsonArrayText::outside(char byte) {
  if (JsonNesting::isSpace(byte)) {
    return true;
  }
  switch (m_place) {
  case Place::before:
    m_place = Place::first;
    return byte == '[';
  case Place::first:
  case Place::next:
    if (byte == ']') {
      const bool isEmpty = m_place == Place::first;
      m_place = Place::behind;
      return isEmpty;
    }
    m_place = Place::object;
    m_nesting.take(byte);
    return byte == '{';
  case Place::afterObject:
    m_place = byte == ',' ? Place::next : Place::behind;
    return byte == ',' || byte == ']';
  default:
    return false;
  }
}

bool JsonArrayText::inside(char byte) {
  m_nesting.take(byte);
  const bool isLast = m_nesting.depth() == 0;
  if (isLast) {
    m_place = Place::afterObject;
  }
  return isLast;
}

} // namespace morvo
