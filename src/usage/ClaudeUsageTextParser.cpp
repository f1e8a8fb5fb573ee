#include "usage/ClaudeUsageTextParser.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace morvo::ClaudeUsageTextParser {
namespace {

/// How far behind its label a percentage may stand, in characters as a reader counts them.
constexpr int reach = 220;
/// No text that people read needs more code units for that many characters.
constexpr qsizetype reachInUnits = qsizetype{16} * reach;

constexpr int whole = 100;

const QStringList sessionLabels{QStringLiteral("Current session")};
const QStringList weeklyLabels{QStringLiteral("Current week (all models)"),
                               QStringLiteral("Current week")};

QString withoutTerminalSequences(QString text) {
  static const QRegularExpression sequence(QStringLiteral("\\x{1B}\\[[0-9;]*[a-zA-Z]"));
  return text.remove(sequence);
}

/// The first characters of the text, none of them cut.
QString beginning(const QString &text) {
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
  for (int count = 0; count < reach; ++count) {
    if (characters.toNextBoundary() < 0) {
      return text;
    }
  }
  return text.first(characters.position());
}

std::optional<int> usedPercent(const QStringList &labels, const QString &text) {
  const auto hit = extractPercent(labels, text);
  if (!hit) {
    return std::nullopt;
  }
  const int number = std::clamp(hit->number, 0, whole);
  return hit->kind == PercentHit::Kind::used ? number : whole - number;
}

} // namespace

UsedPercents parseUsedPercents(const QString &text) {
  const QString plain = withoutTerminalSequences(text);
  return {.session = usedPercent(sessionLabels, plain), .weekly = usedPercent(weeklyLabels, plain)};
}

std::optional<PercentHit> extractPercent(const QStringList &labels, const QString &text) {
  for (const QString &label : labels) {
    const qsizetype found = text.indexOf(label, 0, Qt::CaseInsensitive);
    if (found < 0) {
      continue;
    }
    if (const auto hit = firstPercent(beginning(text.mid(found + label.size(), reachInUnits)))) {
      return hit;
    }
  }
  return std::nullopt;
}

std::optional<PercentHit> firstPercent(const QString &text) {
  static const QRegularExpression percent(QStringLiteral("(\\d{1,3})\\s*%\\s*(left|used)?"),
                                          QRegularExpression::CaseInsensitiveOption |
                                              QRegularExpression::UseUnicodePropertiesOption);
  const auto match = percent.match(text);
  if (!match.hasMatch()) {
    return std::nullopt;
  }
  bool isNumber = false;
  const int number = match.captured(1).toInt(&isNumber);
  if (!isNumber || number > whole) {
    return std::nullopt;
  }
  const bool isUsed = match.captured(2).compare(u"used", Qt::CaseInsensitive) == 0;
  return PercentHit{.number = number,
                    .kind = isUsed ? PercentHit::Kind::used : PercentHit::Kind::left};
}

} // namespace morvo::ClaudeUsageTextParser
