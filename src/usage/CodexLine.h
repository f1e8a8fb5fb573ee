#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

/// Lines of Codex's session logs.
namespace morvo::CodexLine {

/// Every line with a total holds it.
inline const QByteArray marker = QByteArrayLiteral("token_count");

/// What a session has used up to a line.
struct Totals {
  std::int64_t total = 0;
  std::int64_t cached = 0; ///< Of these, served from a cache.

  bool operator==(const Totals &) const = default;
};

/// The session's totals; nothing for a line that does not tell them.
[[nodiscard]] std::optional<Totals> totals(const QByteArray &line);

} // namespace morvo::CodexLine
