#include "pet/IdleMotion.h"

#include <gtest/gtest.h>

#include <numbers>

namespace morvo {
namespace {

const QRectF content(10, 20, 130, 120);
constexpr IdleMotion motion{.speed = 2, .amp = 5};
/// Of a wave of that speed.
constexpr double quarter = std::numbers::pi / 4;

TEST(IdleMotionTest, LeavesThePictureAloneAtTheStart) {
  EXPECT_EQ(motion.at(0, content).mapRect(content), content);
}

TEST(IdleMotionTest, RidesAndStretchesWithTheSineOfSpeedTimesTime) {
  const QRectF moved = motion.at(quarter, content).mapRect(content);
  EXPECT_DOUBLE_EQ(moved.width(), 130);
  EXPECT_DOUBLE_EQ(moved.height(), 120 * 1.025);
  EXPECT_DOUBLE_EQ(moved.bottom(), content.bottom() + 5);
}

TEST(IdleMotionTest, ShrinksAsMuchOnTheOtherHalfOfTheWave) {
  const QRectF moved = motion.at(3 * quarter, content).mapRect(content);
  EXPECT_DOUBLE_EQ(moved.height(), 120 * 0.975);
  EXPECT_DOUBLE_EQ(moved.bottom(), content.bottom() - 5);
}

TEST(IdleMotionTest, KeepsTheMiddleOfTheLowerEdgeInItsColumn) {
  const QPointF foot(content.center().x(), content.bottom());
  EXPECT_DOUBLE_EQ(motion.at(quarter, content).map(foot).x(), foot.x());
}

} // namespace
} // namespace morvo
