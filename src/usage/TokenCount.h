#pragma once

#include <QJsonValue>

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

/// Arithmetic on token counts out of files that anybody may have written: it ends at the limits of
/// the type instead of running over them.
namespace morvo::TokenCount {

[[nodiscard]] constexpr std::int64_t sum(std::int64_t left, std::int64_t right) {
  std::int64_t result = 0;
  if (!__builtin_add_overflow(left, right, &result)) {
    return result;
  }
  return left < 0 ? std::numeric_limits<std::int64_t>::min()
                  : std::numeric_limits<std::int64_t>::max();
}

[[nodiscard]] constexpr std::int64_t difference(std::int64_t left, std::int64_t right) {
  std::int64_t result = 0;
  if (!__builtin_sub_overflow(left, right, &result)) {
    return result;
  }
  return left < 0 ? std::numeric_limits<std::int64_t>::min()
                  : std::numeric_limits<std::int64_t>::max();
}

/// The number without its fraction; 0 for what is no number.
[[nodiscard]] std::int64_t fromReal(double number);

/// What a text of decimal digits with an optional sign says; nothing for any other text and for a
/// number that the type cannot hold.
[[nodiscard]] std::optional<std::int64_t> fromDecimal(std::string_view text);

/// The whole number that a JSON number's text stands for; 0 for one with a fraction and for what is
/// no number.
[[nodiscard]] std::int64_t fromWhole(std::string_view number);
/// The same of a value that has been read.
[[nodiscard]] std::int64_t fromWhole(const QJsonValue &value);

} // namespace morvo::TokenCount
