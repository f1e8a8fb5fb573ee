#pragma once

#include "usage/PercentHit.h"

#include <QString>
#include <QStringList>

#include <optional>

/// Reads what the command `claude` prints for its "/usage". Takes any text. Thread-safe.
namespace morvo::ClaudeUsageTextParser {

/// Used percentages, 0 to 100; nothing where the text does not tell.
struct UsedPercents {
  std::optional<int> session;
  std::optional<int> weekly;

  bool operator==(const UsedPercents &) const = default;
};

[[nodiscard]] UsedPercents parseUsedPercents(const QString &text);

/// The first percentage within the 220 characters behind a label. The labels are tried in their
/// order and found in any letter case; one without a percentage behind it leaves the next to try.
[[nodiscard]] std::optional<PercentHit> extractPercent(const QStringList &labels,
                                                       const QString &text);

/// The first percentage of the text, with the word "left" or "used" perhaps behind it. A number
/// without a word counts what is left. Only the first is looked at: above 100, it is no hit.
[[nodiscard]] std::optional<PercentHit> firstPercent(const QString &text);

} // namespace morvo::ClaudeUsageTextParser
