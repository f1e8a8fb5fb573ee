#include "usage/LogTime.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

constexpr WallTime noon{std::chrono::sys_days{std::chrono::year{2026} / 3 / 10} +
                        std::chrono::hours(12)};

struct TimeCase {
  const char *text;
  std::chrono::minutes afterNoon;
};

class LogTimeParses : public testing::TestWithParam<TimeCase> {};

TEST_P(LogTimeParses, Text) {
  EXPECT_EQ(LogTime::parse(GetParam().text), noon + GetParam().afterNoon) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, LogTimeParses,
    testing::Values(TimeCase{"2026-03-10T12:00:00Z", {}}, TimeCase{"2026-03-10T12:00:00", {}},
                    TimeCase{"2026-03-10T12:00:00.123Z", {}},
                    TimeCase{"2026-03-10T12:00:00.123456Z", {}},
                    TimeCase{"2026-03-10T12:00:00+08:00", std::chrono::hours(-8)},
                    TimeCase{"2026-03-10T12:00:00-0330", std::chrono::minutes(210)},
                    TimeCase{"2026-03-10T12:00:00+01", std::chrono::hours(-1)},
                    // A zone behind a fraction goes with it.
                    TimeCase{"2026-03-10T12:00:00.5+08:00", {}},
                    TimeCase{"2026-03-10T12:00:00+99:00", {}},
                    TimeCase{"2026-03-10T12:00:00 whatever", {}}));

class LogTimeRefuses : public testing::TestWithParam<const char *> {};

TEST_P(LogTimeRefuses, Text) { EXPECT_FALSE(LogTime::parse(GetParam())) << GetParam(); }

INSTANTIATE_TEST_SUITE_P(Others, LogTimeRefuses,
                         testing::Values("", "Z", "2026-03-10", "2026-03-10T12:00Z",
                                         "2026-03-10 12:00:00Z", "20260310T120000Z",
                                         "2026-W11-2T12:00:00Z", "2026-069T12:00:00Z",
                                         "2026-13-10T12:00:00Z", "2026-02-30T12:00:00Z",
                                         "2026-03-10T24:00:00Z", "2026-03-10T12:60:00Z",
                                         "2026-03-10T12:00:61Z", "+026-03-10T12:00:00Z",
                                         "1773144000",
                                         "2026-03-1\xff"
                                         "T12:00:00Z"));

TEST(LogTime, EndsAtTheEndsOfTheCalendar) {
  EXPECT_EQ(LogTime::hoursBefore(noon, 1.5), noon - std::chrono::minutes(90));
  EXPECT_EQ(LogTime::hoursBefore(noon, 1e300), WallTime::min());
  EXPECT_EQ(LogTime::hoursBefore(noon, -1e300), WallTime::max());
}

} // namespace
} // namespace morvo
