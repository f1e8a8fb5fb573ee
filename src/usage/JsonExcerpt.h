#pragma once

#include "usage/JsonNesting.h"

#include <QByteArray>
#include <QByteArrayView>

#include <utility>
#include <vector>

namespace morvo {

/// Makes of the text of a JSON object, as it comes in, the text of a smaller one: with the members
/// of the given names only. So a file with the histories of many projects takes no memory. Of what
/// is left out only the brackets and the quotation marks are looked at.
class JsonExcerpt {
public:
  /// A longer excerpt is none.
  static constexpr qsizetype longest = qsizetype{1} << 20U;

  explicit JsonExcerpt(std::vector<QByteArray> names) : m_names(std::move(names)) {}

  void feed(QByteArrayView bytes);
  /// The text of the excerpt, which its reader judges; empty as long as the text is no whole
  /// object, and when it can be none. Of members of one name all are in it.
  [[nodiscard]] QByteArray text() const;

private:
  enum class Place {
    before, ///< The bracket of the object is to come.
    first,  ///< The first name, or the end of the object.
    next,   ///< Another name.
    name,   ///< In a name.
    colon,  ///< Behind a name.
    value,  ///< In a value, or before it.
    behind, ///< Only white space.
    broken,
  };

  void take(char byte);
  void takeOutside(char byte);
  void beginValue();
  void takeValue(char byte);

  std::vector<QByteArray> m_names;
  Place m_place = Place::before;
  /// Bytes of the byte order mark that have come.
  qsizetype m_marks = 0;
  JsonNesting m_nesting;
  QByteArray m_name;
  bool m_isWanted = false;
  QByteArray m_excerpt;
};

} // namespace morvo
