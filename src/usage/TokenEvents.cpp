#include "usage/TokenEvents.h"

#include <bit>
#include <limits>
#include <utility>

namespace morvo {
namespace {

/// Instead of the seconds of an event that does not fit.
constexpr std::uint32_t isWide = std::numeric_limits<std::uint32_t>::max();

constexpr std::uint32_t largestBillable = std::numeric_limits<std::int32_t>::max();

std::int64_t secondsOf(const TokenEvent &event) {
  return std::chrono::floor<std::chrono::seconds>(event.ts).time_since_epoch().count();
}

bool isWithin(std::int64_t number, std::int64_t highest) {
  return number >= 0 && number <= highest;
}

bool fits(const TokenEvent &event) {
  return event.ts.time_since_epoch() % std::chrono::seconds(1) == WallTime::duration::zero() &&
         isWithin(secondsOf(event), isWide - 1) && isWithin(event.billable, largestBillable) &&
         isWithin(event.cacheRead, std::numeric_limits<std::uint32_t>::max());
}

} // namespace

TokenEvents::TokenEvents(std::initializer_list<TokenEvent> events) {
  for (const TokenEvent &event : events) {
    add(event);
  }
}

TokenEvent TokenEvents::operator[](std::size_t index) const {
  const Packed &event = m_events[index];
  if (event.seconds == isWide) {
    return m_wide[event.billable];
  }
  return {.ts = WallTime(std::chrono::seconds(event.seconds)),
          .billable = event.billable,
          .cacheRead = event.cacheRead,
          .cost = std::bit_cast<double>(event.cost),
          .burnable = event.burnable != 0};
}

void TokenEvents::add(const TokenEvent &event) {
  if (fits(event)) {
    m_events.push_back({.seconds = static_cast<std::uint32_t>(secondsOf(event)),
                        .billable = static_cast<std::uint32_t>(event.billable) & largestBillable,
                        .burnable = event.burnable ? 1U : 0U,
                        .cacheRead = static_cast<std::uint32_t>(event.cacheRead),
                        .cost = std::bit_cast<std::array<std::uint32_t, 2>>(event.cost)});
    return;
  }
  m_events.push_back(
      {.seconds = isWide, .billable = static_cast<std::uint32_t>(m_wide.size()) & largestBillable});
  m_wide.push_back(event);
}

void TokenEvents::append(const TokenEvents &others) {
  if (others.m_wide.empty()) {
    m_events.insert(m_events.end(), others.m_events.begin(), others.m_events.end());
    return;
  }
  for (const TokenEvent event : others) {
    add(event);
  }
}

void TokenEvents::dropBefore(WallTime time) {
  TokenEvents kept;
  kept.reserve(size());
  for (const TokenEvent event : *this) {
    if (event.ts >= time) {
      kept.add(event);
    }
  }
  kept.m_events.shrink_to_fit();
  *this = std::move(kept);
}

} // namespace morvo
