#include "base/VisibleText.h"

#include <algorithm>
#include <array>

namespace morvo::VisibleText {
namespace {

constexpr char32_t ideographicBlank = 0x3000;
constexpr int leastDigits = 4;
constexpr int hexadecimal = 16;

struct Range {
  char32_t first;
  char32_t last;
};

/// Letters and marks by their category, and yet nothing is to be seen of them.
constexpr std::array blankMarks{
    Range{0x034F, 0x034F}, Range{0x115F, 0x1160}, Range{0x17B4, 0x17B5},
    Range{0x180B, 0x180F}, Range{0x2800, 0x2800}, Range{0x3164, 0x3164},
    Range{0xFE00, 0xFE0F}, Range{0xFFA0, 0xFFA0}, Range{0xE0100, 0xE01EF},
};

bool isSeen(char32_t character) {
  switch (QChar::category(character)) {
  case QChar::Other_Control:
  case QChar::Separator_Space:
    return character == U' ' || character == ideographicBlank;
  case QChar::Other_Format:
  case QChar::Other_Surrogate:
  case QChar::Other_PrivateUse:
  case QChar::Other_NotAssigned:
  case QChar::Separator_Line:
  case QChar::Separator_Paragraph:
    return false;
  default:
    return std::ranges::none_of(blankMarks, [character](const Range &range) {
      return character >= range.first && character <= range.last;
    });
  }
}

/// The character that begins at `index`; a lone surrogate counts as one.
char32_t characterAt(const QString &text, qsizetype index) {
  const QChar first = text[index];
  return first.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()
             ? QChar::surrogateToUcs4(first, text[index + 1])
             : char32_t(first.unicode());
}

QString replaced(const QString &text, QStringView kept) {
  QString seen;
  seen.reserve(text.size());
  for (qsizetype index = 0; index < text.size();) {
    const char32_t character = characterAt(text, index);
    const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
    if (isSeen(character) || kept.contains(text[index])) {
      seen += QStringView(text).sliced(index, length);
    } else {
      const QString number = QString::number(static_cast<uint>(character), hexadecimal).toUpper();
      seen += QStringLiteral("[U+%1]").arg(number.rightJustified(leastDigits, u'0'));
    }
    index += length;
  }
  return seen;
}

} // namespace

QString of(const QString &text) { return replaced(text, u"\n\t"); }

QString ofLine(const QString &text) { return replaced(text, {}); }

} // namespace morvo::VisibleText
