#include "Motion.h"
#include "FrameSet.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(MotionTest, EveryShapeIsStillOutsideOfItsTime) {
  for (const double phase : {0.0, 0.2, 0.8, 1.0}) {
    EXPECT_NEAR(Motion::bump(phase, 0.2, 0.8), 0, 1e-9);
    EXPECT_NEAR(Motion::flight(phase, 0.2, 0.8), 0, 1e-9);
    EXPECT_NEAR(Motion::plateau(phase, 0.2, 0.4, 0.6, 0.8), 0, 1e-9);
    EXPECT_NEAR(Motion::blink(phase, 0.2, 0.6), 0, 1e-9);
  }
}

TEST(MotionTest, ABlinkClosesInFullAndFasterThanItOpens) {
  EXPECT_DOUBLE_EQ(Motion::blink(0.25, 0.2, 0.12), 1);
  const double closing = Motion::blink(0.2 + 0.03, 0.2, 0.12);
  const double opening = Motion::blink(0.32 - 0.03, 0.2, 0.12);
  EXPECT_GT(closing, opening);
}

TEST(MotionTest, AFlightIsHighestInTheMiddleAndFastAtItsEnds) {
  EXPECT_DOUBLE_EQ(Motion::flight(0.5, 0, 1), 1);
  EXPECT_GT(Motion::flight(0.1, 0, 1) - Motion::flight(0, 0, 1),
            Motion::flight(0.5, 0, 1) - Motion::flight(0.4, 0, 1));
}

TEST(MotionTest, ASettleBeginsInFullAndDiesAway) {
  EXPECT_DOUBLE_EQ(Motion::settle(0.2, 0.2, 0.8, 2), 1);
  EXPECT_DOUBLE_EQ(Motion::settle(0.8, 0.2, 0.8, 2), 0);
  EXPECT_DOUBLE_EQ(Motion::settle(0.1, 0.2, 0.8, 2), 0);
}

TEST(MotionTest, AnAgeGoesRoundALoop) {
  EXPECT_NEAR(Motion::age(0.5, 0.4, 0.2), 0.5, 1e-9);
  EXPECT_NEAR(Motion::ageInLoop(0.1, 0.9, 0.4), 0.5, 1e-9);
  EXPECT_DOUBLE_EQ(Motion::ageInLoop(0.8, 0.9, 0.4), 1);
}

TEST(MotionTest, ALoopStopsBeforeItsFirstFrameComesAgainAndAOneShotReachesItsEnd) {
  const FrameSet loop{.name = u"loop", .frames = 10, .loop = true};
  const FrameSet once{.name = u"once", .frames = 11, .loop = false};
  EXPECT_DOUBLE_EQ(loop.phase(9), 0.9);
  EXPECT_DOUBLE_EQ(once.phase(10), 1);
}

} // namespace
} // namespace morvo
