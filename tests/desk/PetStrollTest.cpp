#include "pet/PetStroll.h"

#include <gtest/gtest.h>

#include <cmath>

namespace morvo {
namespace {

constexpr QRect area(100, 0, 1400, 900);
constexpr int width = 300;

QRect panelAt(int x) { return {x, 400, width, 400}; }

struct EaseRow {
  double t;
  double part;
};

class StrollEaseTest : public testing::TestWithParam<EaseRow> {};

TEST_P(StrollEaseTest, SpeedsUpThenSlowsDown) {
  EXPECT_DOUBLE_EQ(PetStroll::ease(GetParam().t), GetParam().part);
}

INSTANTIATE_TEST_SUITE_P(Rows, StrollEaseTest,
                         testing::Values(EaseRow{0, 0}, EaseRow{0.25, 0.125}, EaseRow{0.5, 0.5},
                                         EaseRow{0.75, 0.875}, EaseRow{1, 1}, EaseRow{1.7, 1}));

struct DurationRow {
  double distance;
  double speed;
  double seconds;
};

class StrollDurationTest : public testing::TestWithParam<DurationRow> {};

TEST_P(StrollDurationTest, IsNeitherHurriedNorEndless) {
  EXPECT_DOUBLE_EQ(inSeconds(PetStroll::duration(GetParam().distance, GetParam().speed)),
                   GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(Rows, StrollDurationTest,
                         testing::Values(DurationRow{540, 90, 6}, DurationRow{100, 90, 1.2},
                                         DurationRow{-270, 90, 3}, DurationRow{2000, 90, 6},
                                         DurationRow{-9, 90, 1.2}, DurationRow{320, 160, 2},
                                         DurationRow{5000, 160, 6}));

struct RoomRow {
  const char *name;
  int x;
  /// 1, −1, 0 for both by chance.
  int direction;
  double shortest;
  double longest;
};

class StrollDistanceTest : public testing::TestWithParam<RoomRow> {};

TEST_P(StrollDistanceTest, GoesWhereTheRoomIs) {
  const RoomRow &row = GetParam();
  SeededRandomSource random(3);
  int right = 0;
  constexpr int rounds = 2000;
  double shortest = 1e9;
  double longest = 0;
  for (int i = 0; i < rounds; ++i) {
    const auto distance = PetStroll::distance(panelAt(row.x), area, random);
    ASSERT_TRUE(distance);
    right += *distance > 0 ? 1 : 0;
    shortest = std::min(shortest, std::abs(*distance));
    longest = std::max(longest, std::abs(*distance));
  }
  if (row.direction == 0) {
    EXPECT_NEAR(right, rounds / 2, 100);
  } else {
    EXPECT_EQ(right, row.direction > 0 ? rounds : 0);
  }
  EXPECT_NEAR(shortest, row.shortest, 1);
  EXPECT_NEAR(longest, row.longest, 1);
}

// The panel may stand from x = 100 to x = 1200.
INSTANTIATE_TEST_SUITE_P(
    Rows, StrollDistanceTest,
    testing::Values(RoomRow{"fromTheLeftEdge", 100, 1, 140, 380},
                    RoomRow{"fromTheRightEdge", 1200, -1, 140, 380},
                    RoomRow{"withJustNotEnoughRoomOnTheLeft", 280, 1, 140, 380},
                    RoomRow{"withJustNotEnoughRoomOnTheRight", 1020, -1, 140, 380},
                    RoomRow{"byChanceWithRoomOnBothSides", 650, 0, 140, 380}),
    [](const auto &row) { return row.param.name; });

TEST(PetStrollTest, AWalkToTheSmallerSideStopsBeforeTheEdge) {
  SeededRandomSource random(5);
  double longestLeft = 0;
  double longestRight = 0;
  for (int i = 0; i < 4000; ++i) {
    const double distance = PetStroll::distance(panelAt(300), area, random).value();
    longestLeft = std::max(longestLeft, -distance);
    longestRight = std::max(longestRight, distance);
  }
  EXPECT_NEAR(longestLeft, 192, 0.001);
  EXPECT_NEAR(longestRight, 380, 1);
}

TEST(PetStrollTest, EqualRoomWithoutAChoiceGoesToTheRight) {
  SeededRandomSource random(5);
  constexpr QRect narrow(0, 0, width + 300, 900);
  for (int i = 0; i < 50; ++i) {
    EXPECT_GT(PetStroll::distance(panelAt(150), narrow, random).value(), 0);
  }
}

TEST(PetStrollTest, SixtyPointsOfRoomAreTooFew) {
  SeededRandomSource random(5);
  const auto withRoom = [&random](int room) {
    return PetStroll::distance(panelAt(0), {0, 0, width + room, 900}, random);
  };
  EXPECT_FALSE(withRoom(68));
  EXPECT_DOUBLE_EQ(withRoom(69).value(), 61);
  EXPECT_FALSE(withRoom(0));
  EXPECT_FALSE(withRoom(-200));
}

TEST(PetStrollTest, APanelOutsideItsWorkAreaWalksBackIn) {
  SeededRandomSource random(5);
  EXPECT_GT(PetStroll::distance(panelAt(-100), area, random).value(), 0);
  EXPECT_LT(PetStroll::distance(panelAt(1400), area, random).value(), 0);
}

TEST(PetStrollTest, EightPointsAreNoWalk) {
  EXPECT_FALSE(PetStroll::isWalk(8));
  EXPECT_FALSE(PetStroll::isWalk(-8));
  EXPECT_TRUE(PetStroll::isWalk(8.5));
  EXPECT_TRUE(PetStroll::isWalk(-9));
}

} // namespace
} // namespace morvo
