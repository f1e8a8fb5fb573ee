#include "Spring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo {
namespace {

std::vector<double> hop(std::size_t frames) {
  std::vector<double> way(frames, 0);
  for (std::size_t at = 4; at < frames / 2; ++at) {
    way[at] = -40;
  }
  return way;
}

std::vector<double> circle(std::size_t frames) {
  std::vector<double> way;
  for (std::size_t at = 0; at < frames; ++at) {
    way.push_back(30 * std::sin(2 * std::numbers::pi * static_cast<double>(at) /
                                static_cast<double>(frames)));
  }
  return way;
}

TEST(SpringTest, ComesLateAndSwingsPast) {
  const Spring spring{.frequency = 2.5, .damping = 0.3};
  const auto follow = spring.follow(hop(40), false);
  EXPECT_GT(follow[4], -10) << "it has not moved with what it hangs on";
  EXPECT_LT(std::ranges::min(follow), -42) << "it swings past";
}

TEST(SpringTest, AOneShotBeginsAndEndsWithNothingLeft) {
  const auto lag = Spring{.frequency = 1.5, .damping = 0.1}.lag(hop(30), false);
  EXPECT_EQ(lag.front(), 0);
  EXPECT_EQ(lag.back(), 0);
}

TEST(SpringTest, ALoopClosesOnItself) {
  const auto driver = circle(24);
  const auto once = Spring{.frequency = 2, .damping = 0.3}.follow(driver, true);
  auto twice = driver;
  twice.insert(twice.end(), driver.begin(), driver.end());
  const auto both = Spring{.frequency = 2, .damping = 0.3}.follow(twice, true);
  for (std::size_t at = 0; at < driver.size(); ++at) {
    EXPECT_NEAR(once[at], both[at], 1e-3) << at;
    EXPECT_NEAR(once[at], both[at + driver.size()], 1e-3) << at;
  }
}

TEST(SpringTest, StaysWhereNothingMoves) {
  for (const double place : Spring{}.follow(std::vector<double>(12, 7.0), true)) {
    EXPECT_DOUBLE_EQ(place, 7);
  }
  EXPECT_TRUE(Spring{}.follow({}, true).empty());
  EXPECT_EQ(Spring{}.follow({3.0}, false), std::vector<double>{3.0});
}

} // namespace
} // namespace morvo
