#include "base/VisibleText.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace morvo::VisibleText {
namespace {

constexpr char32_t ideographicBlank = 0x3000;
/// Vowels that count as letters, and yet do not part from the one before.
constexpr char32_t thaiSaraAm = 0x0E33;
constexpr char32_t laoAm = 0x0EB3;
constexpr int leastDigits = 4;
constexpr int hexadecimal = 16;
/// More marks on one letter than any writing has reach over the lines above and below, or past the
/// end of their own.
constexpr int mostMarks = 4;
/// Has no width, and ends what is to its left for the rules of mixed directions.
constexpr QChar leftToRightMark(0x200E);

struct Range {
  char32_t first;
  char32_t last;
};

/// Letters, marks and symbols by their category, and yet nothing is to be seen of them.
constexpr std::array blankMarks{
    Range{0x034F, 0x034F}, Range{0x115F, 0x1160},   Range{0x17B4, 0x17B5},   Range{0x180B, 0x180F},
    Range{0x2800, 0x2800}, Range{0x3164, 0x3164},   Range{0xFE00, 0xFE0F},   Range{0xFFA0, 0xFFA0},
    Range{0xFFFC, 0xFFFC}, Range{0x1D159, 0x1D159}, Range{0xE0100, 0xE01EF},
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

/// Whether it stays with the letter before it, so that a line cannot break between them.
bool isMark(char32_t character) {
  switch (QChar::category(character)) {
  case QChar::Mark_NonSpacing:
  case QChar::Mark_Enclosing:
  case QChar::Mark_SpacingCombining:
    return true;
  default:
    return character == thaiSaraAm || character == laoAm;
  }
}

bool isRightToLeft(char32_t character) {
  switch (QChar::direction(character)) {
  case QChar::DirR:
  case QChar::DirAL:
  case QChar::DirAN:
    return true;
  default:
    return false;
  }
}

QString numbered(char32_t character) {
  const QString number = QString::number(static_cast<uint>(character), hexadecimal).toUpper();
  return QStringLiteral("[U+%1]").arg(number.rightJustified(leastDigits, u'0'));
}

QString replaced(const QString &text, QStringView kept) {
  QString seen;
  seen.reserve(text.size());
  // A mark needs a letter to stand on.
  int marks = mostMarks;
  for (qsizetype index = 0; index < text.size();) {
    const char32_t character = characterAt(text, index);
    const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
    const bool isKept = kept.contains(text[index]);
    const bool isPiled = isMark(character) && marks >= mostMarks;
    if (isKept || (isSeen(character) && !isPiled)) {
      seen += QStringView(text).sliced(index, length);
      marks = isKept ? mostMarks : isMark(character) ? marks + 1 : 0;
    } else {
      seen += numbered(character);
      marks = mostMarks;
    }
    index += length;
  }
  return seen;
}

/// The line with marks of the direction, if any of it runs from right to left.
QString directed(const QString &line) {
  QString marked(leftToRightMark);
  bool isInWord = false;
  bool hasWords = false;
  for (qsizetype index = 0; index < line.size();) {
    const char32_t character = characterAt(line, index);
    const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
    const bool continues = isRightToLeft(character) || (isInWord && isMark(character));
    if (isInWord && !continues) {
      marked += leftToRightMark;
    }
    marked += QStringView(line).sliced(index, length);
    isInWord = continues;
    hasWords = hasWords || continues;
    index += length;
  }
  if (isInWord) {
    marked += leftToRightMark;
  }
  return hasWords ? marked : line;
}

QString directedLines(const QString &text) {
  QStringList lines = text.split(u'\n');
  std::ranges::transform(lines, lines.begin(), directed);
  return lines.join(u'\n');
}

} // namespace

QString of(const QString &text) { return directedLines(replaced(text, u"\n\t")); }

QString ofLine(const QString &text) { return directed(replaced(text, {})); }

QString shortened(const QString &text, qsizetype longest) {
  if (text.size() <= longest) {
    return text;
  }
  const bool splitsCharacter =
      longest > 0 && text[longest - 1].isHighSurrogate() && text[longest].isLowSurrogate();
  return text.first(splitsCharacter ? longest - 1 : longest) + QStringLiteral("……");
}

} // namespace morvo::VisibleText
