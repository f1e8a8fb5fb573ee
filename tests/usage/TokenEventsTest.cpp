#include "usage/TokenEvents.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using Limits = std::numeric_limits<std::int64_t>;

constexpr WallTime noon{std::chrono::milliseconds(1'773'144'000'000)};
constexpr TokenEvent usual{
    .ts = noon, .billable = 1200, .cacheRead = 90'000, .cost = 0.0123, .burnable = true};

TokenEvent with(void (*change)(TokenEvent &event)) {
  TokenEvent event = usual;
  change(event);
  return event;
}

class TokenEventsOf : public testing::TestWithParam<TokenEvent> {};

TEST_P(TokenEventsOf, AnEventComesBackAsItWas) {
  const TokenEvents events{usual, GetParam(), usual};
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[1], GetParam());
  EXPECT_EQ(std::vector(events.begin(), events.end()), (std::vector{usual, GetParam(), usual}));
}

TEST_P(TokenEventsOf, AppendingAndDroppingKeepTheOthers) {
  TokenEvents events{with([](TokenEvent &event) { event.ts = WallTime::min(); }), usual};
  events.append({usual, GetParam()});
  events.append({GetParam()});
  events.dropBefore(WallTime::min() + 1ms);
  const TokenEvents expected = GetParam().ts == WallTime::min()
                                   ? TokenEvents{usual, usual}
                                   : TokenEvents{usual, usual, GetParam(), GetParam()};
  EXPECT_EQ(events, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Events, TokenEventsOf,
    testing::Values(
        usual, TokenEvent(), with([](TokenEvent &event) { event.burnable = false; }),
        with([](TokenEvent &event) { event.ts += 1ms; }),
        with([](TokenEvent &event) { event.ts = WallTime(-1s); }),
        with([](TokenEvent &event) { event.ts = WallTime(std::chrono::seconds(0xFFFFFFFE)); }),
        with([](TokenEvent &event) { event.ts = WallTime(std::chrono::seconds(0xFFFFFFFF)); }),
        with([](TokenEvent &event) { event.ts = WallTime::max(); }),
        with([](TokenEvent &event) { event.ts = WallTime::min(); }),
        with([](TokenEvent &event) { event.billable = 0x7FFFFFFF; }),
        with([](TokenEvent &event) { event.billable = 0x80000000; }),
        with([](TokenEvent &event) { event.billable = -1; }),
        with([](TokenEvent &event) { event.billable = Limits::max(); }),
        with([](TokenEvent &event) { event.cacheRead = 0xFFFFFFFF; }),
        with([](TokenEvent &event) { event.cacheRead = 0x100000000; }),
        with([](TokenEvent &event) { event.cacheRead = Limits::min(); }),
        with([](TokenEvent &event) { event.cost = -1e300; })));

TEST(TokenEvents, AreEqualWhenTheirEventsAre) {
  EXPECT_EQ(TokenEvents(), TokenEvents());
  EXPECT_TRUE(TokenEvents().empty());
  EXPECT_NE(TokenEvents{usual}, TokenEvents());
  EXPECT_NE(TokenEvents{usual}, TokenEvents{with([](TokenEvent &event) { event.cost = 0; })});
  EXPECT_NE(TokenEvents{with([](TokenEvent &event) { event.billable = -1; })},
            TokenEvents{with([](TokenEvent &event) { event.billable = -2; })});
}

} // namespace
} // namespace morvo
