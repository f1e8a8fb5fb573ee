#include "Skeleton.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(SkeletonTest, AChildGoesWhereItsParentTakesIt) {
  Skeleton skeleton;
  const int body = skeleton.add({.place = {100, 200}, .turn = 90});
  const int arm = skeleton.add({.parent = body, .place = {10, 0}});
  EXPECT_NEAR(skeleton.place(arm).x(), 100, 1e-9);
  EXPECT_NEAR(skeleton.place(arm).y(), 210, 1e-9);
}

TEST(SkeletonTest, AMirroredJointTurnsTheOtherWay) {
  Skeleton skeleton;
  const int mirror = skeleton.add({.width = -1});
  const int fin = skeleton.add({.parent = mirror, .turn = 90});
  // What points up is turned to the left instead of to the right.
  EXPECT_NEAR(skeleton.place(fin, {0, -10}).x(), -10, 1e-9);
}

TEST(SkeletonTest, SquashingAParentMovesItsChildren) {
  Skeleton skeleton;
  const int body = skeleton.add({.width = 2, .height = 0.5});
  const int head = skeleton.add({.parent = body, .place = {3, -100}});
  EXPECT_NEAR(skeleton.place(head).x(), 6, 1e-9);
  EXPECT_NEAR(skeleton.place(head).y(), -50, 1e-9);
}

} // namespace
} // namespace morvo
