#pragma once

#include "usage/JsonNesting.h"
#include "usage/LogLine.h"

#include <QByteArray>

#include <functional>
#include <string_view>

namespace morvo {

/// Cuts the text of a JSON array of objects into the texts of its objects, as it comes in, so that
/// no more than one of them is held; those beyond `LogLine::longest` are passed over. It looks at
/// brackets and quotation marks only; whoever takes an object says whether it is one.
class JsonArrayText {
public:
  /// False refuses the object, and with it the whole text.
  using Take = std::function<bool(const QByteArray &object)>;

  /// The length of the longest object is a parameter for tests.
  explicit JsonArrayText(Take take, qsizetype longest = LogLine::longest);

  /// Takes in the next bytes; false as soon as the text can be no array of objects.
  [[nodiscard]] bool feed(std::string_view bytes);
  /// Whether the text so far is a whole array.
  [[nodiscard]] bool isComplete() const { return m_place == Place::behind; }

private:
  enum class Place {
    before,      ///< The bracket of the array is to come.
    first,       ///< The first object, or the end of the array.
    next,        ///< Another object.
    object,      ///< In an object.
    afterObject, ///< A comma, or the end of the array.
    behind,      ///< Only white space.
  };

  /// Takes in a byte outside of the objects; false when it cannot stand there.
  bool outside(char byte);
  /// Takes in a byte of an object; true when it was the last one.
  bool inside(char byte);
  void keep(std::string_view bytes);

  Take m_take;
  qsizetype m_longest;
  Place m_place = Place::before;
  JsonNesting m_nesting;
  QByteArray m_object;
  bool m_isTooLong = false;
};

} // namespace morvo
