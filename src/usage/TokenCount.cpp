#include "usage/TokenCount.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace morvo {
namespace {

/// The first real number that the type cannot hold.
constexpr double beyond = 0x1p63;

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::int64_t TokenCount::fromReal(double number) {
  if (std::isnan(number)) {
    return 0;
  }
  if (number >= beyond) {
    return std::numeric_limits<std::int64_t>::max();
  }
  if (number < -beyond) {
    return std::numeric_limits<std::int64_t>::min();
  }
  return static_cast<std::int64_t>(number);
}

std::optional<std::int64_t> TokenCount::fromDecimal(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  const std::string_view digits = isNegative || text.starts_with('+') ? text.substr(1) : text;
  if (!isDigits(digits)) {
    return std::nullopt;
  }
  std::int64_t count = 0;
  const std::string_view number = isNegative ? text : digits;
  const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), count);
  return failure == std::errc() ? std::optional(count) : std::nullopt;
}

std::int64_t TokenCount::fromWhole(std::string_view number) {
  if (const auto count = fromDecimal(number)) {
    return *count;
  }
  double real = 0;
  const auto [end, failure] = std::from_chars(number.data(), number.data() + number.size(), real);
  const bool isNumber = failure == std::errc() && end == number.data() + number.size();
  return isNumber && std::isfinite(real) && std::trunc(real) == real ? fromReal(real) : 0;
}

std::int64_t TokenCount::fromWhole(const QJsonValue &value) {
  const double real = value.toDouble();
  if (!value.isDouble() || std::trunc(real) != real) {
    return 0;
  }
  // Whole numbers in the range are kept exactly; the others have become reals.
  return std::abs(real) >= beyond ? fromReal(real) : value.toInteger();
}

} // namespace morvo
