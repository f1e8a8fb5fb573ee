#pragma once

#include <cstdint>
#include <limits>
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

/// What a text of decimal digits with an optional sign says, and nothing but that; false for any
/// other text, which leaves `count` alone.
[[nodiscard]] bool fromDecimal(std::string_view text, std::int64_t &count);

} // namespace morvo::TokenCount
