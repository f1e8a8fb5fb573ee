#include "monitor/SettingsSeal.h"

#include <QByteArrayView>
#include <QString>

#include <algorithm>
#include <optional>

namespace morvo::SettingsSeal {
namespace {

/// U+10FFFD, the last private character; doubled it stands for itself.
constexpr QByteArrayView mark("\xF4\x8F\xBF\xBD");
/// The mark's own escape.
constexpr char16_t markHigh = 0xDBFF;
constexpr char16_t markLow = 0xDFFD;
/// After the mark: the rest of the text up to the closing quote is a number.
constexpr char numberSign = '#';
/// After the mark: the surrogate of that distance from U+D800.
constexpr char16_t firstCarrier = 0xE000;
constexpr char16_t firstSurrogate = 0xD800;
constexpr int surrogateCount = 0x800;
/// Length of `\u` and its four digits.
constexpr qsizetype escapeLength = 6;
/// Length of a carrier in UTF-8.
constexpr qsizetype carrierLength = 3;
/// Integers of at most this many digits fit 64 bits.
constexpr qsizetype safeDigits = 18;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// The code unit of the escape, `\u` and four digits, that starts at `position`.
std::optional<char16_t> escapedUnit(QByteArrayView text, qsizetype position) {
  const auto escape = text.sliced(std::min(position, text.size()));
  if (escape.size() < escapeLength || !escape.startsWith("\\u")) {
    return std::nullopt;
  }
  const auto digits = escape.sliced(2, 4);
  if (!std::ranges::all_of(digits, [](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
      })) {
    return std::nullopt;
  }
  return digits.toByteArray().toUShort(nullptr, 16);
}

QByteArray carrier(char16_t surrogate) {
  return QString(QChar(static_cast<char16_t>(firstCarrier + (surrogate - firstSurrogate))))
      .toUtf8();
}

/// Seals what starts at the backslash at `position`; how many bytes of `text` that took.
qsizetype sealEscape(QByteArrayView text, qsizetype position, QByteArray &out) {
  const auto unit = escapedUnit(text, position);
  if (!unit || !QChar::isSurrogate(*unit)) {
    // The escaped character comes along, so that an escaped quote does not end the text.
    const qsizetype length = std::min<qsizetype>(2, text.size() - position);
    out += text.sliced(position, length);
    return length;
  }
  const auto next = escapedUnit(text, position + escapeLength);
  if (QChar::isHighSurrogate(*unit) && next && QChar::isLowSurrogate(*next)) {
    if (*unit == markHigh && *next == markLow) {
      out += mark;
      out += mark;
    } else {
      out += text.sliced(position, 2 * escapeLength);
    }
    return 2 * escapeLength;
  }
  out += mark;
  out += carrier(*unit);
  return escapeLength;
}

/// Seals the string whose opening quote is at `position`; how many bytes of `text` that took.
qsizetype sealString(QByteArrayView text, qsizetype position, QByteArray &out) {
  qsizetype at = position + 1;
  out += '"';
  while (at < text.size()) {
    if (text[at] == '\\') {
      at += sealEscape(text, at, out);
    } else if (text.sliced(at).startsWith(mark)) {
      out += mark;
      out += mark;
      at += mark.size();
    } else {
      out += text[at];
      ++at;
      if (out.back() == '"') {
        break;
      }
    }
  }
  return at - position;
}

/// Moves `at` over digits; whether there was one.
bool skipDigits(QByteArrayView token, qsizetype &at) {
  const qsizetype start = at;
  while (at < token.size() && isDigit(token[at])) {
    ++at;
  }
  return at > start;
}

/// Whether `token` is a number by JSON's grammar.
bool isNumber(QByteArrayView token) {
  qsizetype at = token.startsWith('-') ? 1 : 0;
  const qsizetype whole = at;
  if (!skipDigits(token, at) || (token[whole] == '0' && at > whole + 1)) {
    return false;
  }
  if (at < token.size() && token[at] == '.') {
    ++at;
    if (!skipDigits(token, at)) {
      return false;
    }
  }
  if (at < token.size() && (token[at] == 'e' || token[at] == 'E')) {
    ++at;
    if (at < token.size() && (token[at] == '+' || token[at] == '-')) {
      ++at;
    }
    if (!skipDigits(token, at)) {
      return false;
    }
  }
  return at == token.size();
}

/// Whether the library gives that number back as it is.
bool survives(QByteArrayView number) {
  return std::ranges::none_of(number, [](char c) { return c == '.' || c == 'e' || c == 'E'; }) &&
         number.size() <= safeDigits && number != QByteArrayView("-0");
}

/// Seals the number that starts at `position`; how many bytes of `text` that took.
qsizetype sealNumber(QByteArrayView text, qsizetype position, QByteArray &out) {
  qsizetype end = position + 1;
  while (end < text.size() && (isDigit(text[end]) || QByteArrayView("+-.eE").contains(text[end]))) {
    ++end;
  }
  const auto token = text.sliced(position, end - position);
  qsizetype next = end;
  while (next < text.size() && isBlank(text[next])) {
    ++next;
  }
  // In the place of a key a number is an error and has to stay one.
  const bool isKey = next < text.size() && text[next] == ':';
  if (!isKey && isNumber(token) && !survives(token)) {
    out += '"';
    out += mark;
    out += numberSign;
    out += token;
    out += '"';
  } else {
    out += token;
  }
  return token.size();
}

/// The surrogate whose carrier starts at `position`.
std::optional<char16_t> carriedSurrogate(QByteArrayView text, qsizetype position) {
  const auto bytes = text.sliced(position, std::min(carrierLength, text.size() - position));
  const QString decoded = QString::fromUtf8(bytes.data(), bytes.size());
  const int distance = decoded.size() == 1 ? decoded[0].unicode() - firstCarrier : -1;
  return distance >= 0 && distance < surrogateCount
             ? std::optional(static_cast<char16_t>(firstSurrogate + distance))
             : std::nullopt;
}

/// Opens what follows the mark that ends before `position`; how many bytes of `text` that took.
qsizetype openMark(QByteArrayView text, qsizetype position, QByteArray &out) {
  const auto rest = text.sliced(position);
  if (rest.startsWith(numberSign) && out.endsWith('"')) {
    const qsizetype end = rest.indexOf('"');
    if (end > 0) {
      out.chop(1);
      out += rest.sliced(1, end - 1);
      return end + 1;
    }
  }
  if (const auto surrogate = carriedSurrogate(text, position)) {
    out += "\\u" + QByteArray::number(*surrogate, 16);
    return carrierLength;
  }
  out += mark;
  return rest.startsWith(mark) ? mark.size() : 0;
}

} // namespace

QByteArray sealed(const QByteArray &text) {
  QByteArray out;
  out.reserve(text.size() + text.size() / 8);
  const QByteArrayView view(text);
  for (qsizetype at = 0; at < view.size();) {
    if (view[at] == '"') {
      at += sealString(view, at, out);
    } else if (view[at] == '-' || isDigit(view[at])) {
      at += sealNumber(view, at, out);
    } else {
      out += view[at];
      ++at;
    }
  }
  return out;
}

QByteArray opened(const QByteArray &text) {
  QByteArray out;
  out.reserve(text.size());
  const QByteArrayView view(text);
  for (qsizetype at = 0; at < view.size();) {
    if (view.sliced(at).startsWith(mark)) {
      at += mark.size();
      at += openMark(view, at, out);
    } else {
      out += view[at];
      ++at;
    }
  }
  return out;
}

} // namespace morvo::SettingsSeal
