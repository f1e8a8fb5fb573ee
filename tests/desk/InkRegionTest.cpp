#include "pet/InkRegion.h"

#include <gtest/gtest.h>

#include <QPainter>

namespace morvo {
namespace {

QImage blank(QSize size) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

TEST(InkRegionTest, AnEmptyPictureHasNone) {
  EXPECT_TRUE(InkRegion::of(blank({40, 40}), {0, 0, 40, 40}, 1, 4).isEmpty());
}

TEST(InkRegionTest, IsExactWithCellsOfOnePixel) {
  QImage image = blank({40, 40});
  QPainter(&image).fillRect(QRect(7, 9, 11, 5), Qt::black);
  EXPECT_EQ(InkRegion::of(image, {0, 0, 40, 40}, 255, 1), QRegion(7, 9, 11, 5));
}

TEST(InkRegionTest, KeepsAHoleAndTwoPartsOfARowApart) {
  QImage image = blank({40, 40});
  QPainter painter(&image);
  painter.fillRect(QRect(0, 0, 40, 40), Qt::black);
  painter.setCompositionMode(QPainter::CompositionMode_Clear);
  painter.fillRect(QRect(10, 10, 20, 20), Qt::transparent);
  painter.end();
  EXPECT_EQ(InkRegion::of(image, {0, 0, 40, 40}, 1, 1),
            QRegion(0, 0, 40, 40) - QRegion(10, 10, 20, 20));
}

TEST(InkRegionTest, LeavesOutWhatIsFainterThanTheLimit) {
  QImage image = blank({8, 8});
  image.fill(QColor(0, 0, 0, 99));
  EXPECT_TRUE(InkRegion::of(image, {0, 0, 8, 8}, 100, 1).isEmpty());
  EXPECT_EQ(InkRegion::of(image, {0, 0, 8, 8}, 99, 1), QRegion(0, 0, 8, 8));
}

TEST(InkRegionTest, CountsInDeviceIndependentPixels) {
  QImage image = blank({80, 80});
  QPainter(&image).fillRect(QRect(20, 20, 40, 40), Qt::black);
  image.setDevicePixelRatio(2);
  EXPECT_EQ(InkRegion::of(image, {0, 0, 40, 40}, 255, 1), QRegion(10, 10, 20, 20));
}

TEST(InkRegionTest, StaysWithinTheAreaAndThePicture) {
  QImage image = blank({30, 30});
  image.fill(Qt::black);
  EXPECT_EQ(InkRegion::of(image, {10, 10, 10, 10}, 1, 4), QRegion(10, 10, 10, 10));
  EXPECT_EQ(InkRegion::of(image, {-5, 20, 100, 100}, 1, 4), QRegion(0, 20, 30, 10));
}

TEST(InkRegionTest, AFormatWithoutAlphaIsInkAllOver) {
  const QImage image(20, 20, QImage::Format_RGB32);
  EXPECT_EQ(InkRegion::of(image, {0, 0, 20, 20}, 255, 1), QRegion(0, 0, 20, 20));
}

} // namespace
} // namespace morvo
