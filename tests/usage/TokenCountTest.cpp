#include "usage/TokenCount.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

TEST(TokenCount, SumsAndDifferencesEndAtTheLimits) {
  EXPECT_EQ(TokenCount::sum(2, 3), 5);
  EXPECT_EQ(TokenCount::sum(most, 1), most);
  EXPECT_EQ(TokenCount::sum(least, -1), least);
  EXPECT_EQ(TokenCount::difference(2, 3), -1);
  EXPECT_EQ(TokenCount::difference(most, -1), most);
  EXPECT_EQ(TokenCount::difference(0, least), most);
  EXPECT_EQ(TokenCount::difference(least, 1), least);
}

TEST(TokenCount, RealsAreCutToWholeNumbers) {
  EXPECT_EQ(TokenCount::fromReal(5.9), 5);
  EXPECT_EQ(TokenCount::fromReal(-5.9), -5);
  EXPECT_EQ(TokenCount::fromReal(1e30), most);
  EXPECT_EQ(TokenCount::fromReal(-1e30), least);
  EXPECT_EQ(TokenCount::fromReal(std::numeric_limits<double>::infinity()), most);
  EXPECT_EQ(TokenCount::fromReal(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(TokenCount, DecimalsMayHaveASignAndNothingElse) {
  EXPECT_EQ(TokenCount::fromDecimal("1200"), 1200);
  EXPECT_EQ(TokenCount::fromDecimal("+1200"), 1200);
  EXPECT_EQ(TokenCount::fromDecimal("-1200"), -1200);
  EXPECT_EQ(TokenCount::fromDecimal("9223372036854775807"), most);
  EXPECT_EQ(TokenCount::fromDecimal("-9223372036854775808"), least);
  for (const auto *text : {"", "12a", " 12", "12 ", "1.5", "+-1", "-+1", "+", "-", "1e3",
                           "9223372036854775808", "-9223372036854775809"}) {
    EXPECT_FALSE(TokenCount::fromDecimal(text)) << text;
  }
}

TEST(TokenCount, NumbersBeyondTheTypeEndAtItsLimits) {
  EXPECT_EQ(TokenCount::fromWhole(std::string_view("9223372036854775808")), most);
  EXPECT_EQ(TokenCount::fromWhole(std::string_view("-99999999999999999999")), least);
  EXPECT_EQ(TokenCount::fromWhole(std::string_view("1e30")), most);
  EXPECT_EQ(TokenCount::fromWhole(std::string_view("1.5")), 0);
}

} // namespace
} // namespace morvo
