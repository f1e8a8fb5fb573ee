#include "Curve.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using Ease = Curve::Ease;

TEST(CurveTest, MeetsEveryKeyAndHoldsBeyondThem) {
  const Curve curve{{0.2, 1}, {0.5, 3, Ease::in}, {0.8, -2, Ease::back}};
  EXPECT_DOUBLE_EQ(curve.at(0), 1);
  EXPECT_DOUBLE_EQ(curve.at(0.2), 1);
  EXPECT_DOUBLE_EQ(curve.at(0.5), 3);
  EXPECT_DOUBLE_EQ(curve.at(0.8), -2);
  EXPECT_DOUBLE_EQ(curve.at(1), -2);
}

TEST(CurveTest, LeavesSlowlyOrFastAsToldAndMeetsInTheMiddle) {
  EXPECT_LT(Curve({{0, 0}, {1, 1, Ease::in}}).at(0.25), 0.25);
  EXPECT_GT(Curve({{0, 0}, {1, 1, Ease::out}}).at(0.25), 0.25);
  EXPECT_DOUBLE_EQ(Curve({{0, 0}, {1, 1, Ease::linear}}).at(0.25), 0.25);
  EXPECT_DOUBLE_EQ(Curve({{0, 0}, {1, 1, Ease::inOut}}).at(0.5), 0.5);
}

TEST(CurveTest, BackShootsPastItsValue) {
  const Curve curve{{0, 0}, {1, 1, Ease::back}};
  EXPECT_GT(curve.at(0.7), 1);
}

TEST(CurveTest, HoldKeepsTheOldValueUpToTheKey) {
  const Curve curve{{0, 5}, {1, 9, Ease::hold}};
  EXPECT_DOUBLE_EQ(curve.at(0.999), 5);
  EXPECT_DOUBLE_EQ(curve.at(1), 9);
}

TEST(CurveTest, TakesThePhaseRoundALoop) {
  const Curve curve{{0, 0}, {0.5, 1}, {1, 0}};
  EXPECT_DOUBLE_EQ(curve.inLoop(1.25), curve.at(0.25));
  EXPECT_DOUBLE_EQ(curve.inLoop(-0.25), curve.at(0.75));
}

} // namespace
} // namespace morvo
