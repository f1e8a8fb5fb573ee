#include "usage/LogTime.h"

#include "usage/TokenCount.h"

namespace morvo {
namespace {

/// "2026-03-10T12:00:00": the part before the zone.
constexpr std::size_t secondsLength = 19;

/// The number in exactly those digits; a negative one when they are not all digits.
int digits(std::string_view text, std::size_t at, std::size_t count) {
  int number = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') {
      return -1;
    }
    number = number * 10 + (c - '0');
  }
  return number;
}

bool isWithin(int number, int lowest, int highest) { return number >= lowest && number <= highest; }

std::optional<WallTime> dateAndTime(std::string_view text) {
  using namespace std::chrono;
  if (text.size() < secondsLength || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
      text[13] != ':' || text[16] != ':') {
    return std::nullopt;
  }
  const int yearNumber = digits(text, 0, 4);
  const int monthNumber = digits(text, 5, 2);
  const int dayNumber = digits(text, 8, 2);
  const int hour = digits(text, 11, 2);
  const int minute = digits(text, 14, 2);
  const int second = digits(text, 17, 2);
  if (yearNumber < 0 || monthNumber < 0 || dayNumber < 0 || !isWithin(hour, 0, 23) ||
      !isWithin(minute, 0, 59) || !isWithin(second, 0, 59)) {
    return std::nullopt;
  }
  const year_month_day date = year(yearNumber) / monthNumber / dayNumber;
  if (!date.ok()) {
    return std::nullopt;
  }
  return WallTime(sys_days(date)) + hours(hour) + minutes(minute) + std::chrono::seconds(second);
}

/// How far the zone is ahead of universal time: "Z", "+08:00", "+0800" or "+08".
std::optional<std::chrono::minutes> zone(std::string_view text) {
  if (text == "Z") {
    return std::chrono::minutes(0);
  }
  if (!text.starts_with('+') && !text.starts_with('-')) {
    return std::nullopt;
  }
  const bool hasColon = text.size() == 6 && text[3] == ':';
  if (!hasColon && text.size() != 5 && text.size() != 3) {
    return std::nullopt;
  }
  const int hour = digits(text, 1, 2);
  const int minute = text.size() == 3 ? 0 : digits(text, hasColon ? 4 : 3, 2);
  if (!isWithin(hour, 0, 23) || !isWithin(minute, 0, 59)) {
    return std::nullopt;
  }
  const std::chrono::minutes ahead = std::chrono::hours(hour) + std::chrono::minutes(minute);
  return text.starts_with('-') ? -ahead : ahead;
}

} // namespace

std::optional<WallTime> LogTime::parse(std::string_view text) {
  const auto time = dateAndTime(text);
  if (!time) {
    return std::nullopt;
  }
  return *time - zone(text.substr(secondsLength)).value_or(std::chrono::minutes(0));
}

WallTime LogTime::hoursBefore(WallTime now, double hours) {
  constexpr double millisecondsPerHour = 3'600'000;
  return WallTime(std::chrono::milliseconds(TokenCount::fromReal(
      static_cast<double>(now.time_since_epoch().count()) - hours * millisecondsPerHour)));
}

} // namespace morvo
