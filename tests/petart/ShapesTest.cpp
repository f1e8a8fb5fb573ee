#include "Shapes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace morvo {
namespace {

TEST(ShapesTest, ASpineKeepsItsLengthHoweverItBends) {
  for (const double bend : {-200.0, 0.0, 75.0}) {
    const QPolygonF spine = Shapes::spine(90, bend, 20);
    double length = 0;
    for (qsizetype at = 1; at < spine.size(); ++at) {
      const QPointF way = spine[at] - spine[at - 1];
      length += std::hypot(way.x(), way.y());
    }
    EXPECT_NEAR(length, 90, 1e-6);
  }
}

TEST(ShapesTest, AStraightSpinePointsUpAndABentOneToTheRight) {
  EXPECT_NEAR(Shapes::heading(Shapes::spine(50, 0)), 0, 1e-6);
  EXPECT_GT(Shapes::heading(Shapes::spine(50, 60)), 40);
  EXPECT_NEAR(Shapes::spine(50, 0).back().y(), -50, 1e-6);
}

TEST(ShapesTest, ALimbIsAsWideAsAskedAllAlong) {
  const QPainterPath limb = Shapes::limb(Shapes::spine(100, 0), [](double) { return 10.0; });
  EXPECT_TRUE(limb.contains({8, -50}));
  EXPECT_FALSE(limb.contains({13, -50}));
}

TEST(ShapesTest, SignsAreAboutOneHighRoundTheOrigin) {
  for (const QPainterPath &sign :
       {Shapes::heart(), Shapes::sparkle(), Shapes::drop(), Shapes::note(), Shapes::snore()}) {
    const QRectF bounds = sign.boundingRect();
    EXPECT_NEAR(bounds.height(), 0.95, 0.2);
    EXPECT_TRUE(bounds.contains(QPointF(0, 0)));
  }
}

TEST(ShapesTest, FewerThanTwoPointsAreNoLine) {
  EXPECT_TRUE(Shapes::openThrough({QPointF(1, 1)}).isEmpty());
}

} // namespace
} // namespace morvo
