#include "usage/ClaudeUsageTextParser.h"

#include <cstddef>
#include <cstdint>

namespace {

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

bool isPercentage(const std::optional<int> &number) {
  return !number || (*number >= 0 && *number <= 100);
}

} // namespace

/// What a command printed for "/usage", read with the terminal's sequences in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  namespace Parser = morvo::ClaudeUsageTextParser;
  const QString text = QString::fromUtf8(QByteArrayView(data, static_cast<qsizetype>(size)));
  const auto used = Parser::parseUsedPercents(text);
  require(isPercentage(used.session) && isPercentage(used.weekly));
  const auto hit = Parser::firstPercent(text);
  require(!hit || isPercentage(hit->number));
  // Behind its label, the same percentage counts.
  const QString labelled = QStringLiteral("Current session ") + text.left(100);
  const auto first = Parser::firstPercent(text.left(100));
  require(text.contains(QChar(0x1B)) ||
          Parser::parseUsedPercents(labelled).session.has_value() == first.has_value());
  return 0;
}
