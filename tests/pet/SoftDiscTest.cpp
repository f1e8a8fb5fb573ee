#include "pet/SoftDisc.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace morvo {
namespace {

constexpr SoftDisc disc{.diameter = 60, .blur = 9, .opacity = 0.5};
constexpr int side = 160;

QImage painted(double limit) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  const QPointF centre(side / 2.0, side / 2.0);
  if (limit > 0) {
    disc.paint(painter, centre, Qt::red, limit);
  } else {
    disc.paint(painter, centre, Qt::red);
  }
  return image;
}

int alphaAt(const QImage &image, int distance) {
  return qAlpha(image.pixel(side / 2 + distance, side / 2));
}

TEST(SoftDiscTest, HasItsOpacityInTheMiddleAndHalfOfItAtTheEdge) {
  EXPECT_NEAR(disc.opacityAt(0), 0.5, 0.001);
  EXPECT_DOUBLE_EQ(disc.opacityAt(30), 0.25);
  EXPECT_NEAR(disc.opacityAt(disc.reach()), 0, 0.005);
}

TEST(SoftDiscTest, WithoutABlurItHasAnEdge) {
  constexpr SoftDisc hard{.diameter = 60, .blur = 0, .opacity = 0.5};
  EXPECT_DOUBLE_EQ(hard.opacityAt(29.9), 0.5);
  EXPECT_DOUBLE_EQ(hard.opacityAt(30.1), 0);
}

TEST(SoftDiscTest, PaintsItsProfile) {
  const QImage image = painted(0);
  for (const int distance : {0, 15, 30, 40}) {
    EXPECT_NEAR(alphaAt(image, distance), 255 * disc.opacityAt(distance + 0.5), 4) << distance;
  }
  EXPECT_EQ(alphaAt(image, 60), 0);
}

TEST(SoftDiscTest, DiesAwayBeforeALimit) {
  const QImage image = painted(32);
  EXPECT_NEAR(alphaAt(image, 0), 127, 3);
  EXPECT_LE(alphaAt(image, 31), 2);
  EXPECT_EQ(alphaAt(image, 33), 0);
}

} // namespace
} // namespace morvo
