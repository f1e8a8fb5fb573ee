#include "pet/MorvoSprite.h"

#include "pet/PetPalette.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace morvo {
namespace {

const QColor tint(0x20, 0xc0, 0x40);

QImage painted(QSize size, const QColor &color = tint) {
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  MorvoSprite::paint(painter, image.rect(), color);
  return image;
}

/// The colour at a point of the box of 130 by 120, from its middle.
QColor at(const QImage &image, double x, double y) {
  const double scale = image.width() / MorvoSprite::frame.width();
  return image.pixelColor(qRound((65 + x) * scale), qRound((60 + y) * scale));
}

TEST(MorvoSpriteTest, IsTintedAndItsEyesAreNot) {
  const QImage image = painted({520, 480});
  EXPECT_NEAR(at(image, 0, -15).hslHue(), tint.hslHue(), 2);
  EXPECT_EQ(at(image, 14.5, 1.5), PetPalette::abyss().dark);
  EXPECT_EQ(at(image, -14.5, 1.5), PetPalette::abyss().dark);
}

TEST(MorvoSpriteTest, ItsBodyIsAHundredWideAndSixtyTwoHigh) {
  const QImage image = painted({520, 480});
  EXPECT_EQ(at(image, -49.5, 0).alpha(), 255);
  EXPECT_LT(at(image, -50.5, 0).alpha(), 255);
  EXPECT_EQ(at(image, 0, -30.5).alpha(), 255);
  EXPECT_LT(at(image, 0, -31.5).alpha(), 255);
  EXPECT_EQ(at(image, 0, 30.5).alpha(), 255);
  EXPECT_LT(at(image, 0, 31.5).alpha(), 255);
}

TEST(MorvoSpriteTest, ItsTailStandsOnTheRight) {
  const QImage image = painted({520, 480});
  EXPECT_GT(at(image, 58, 8).alpha(), 220);
  EXPECT_LT(at(image, -58, 8).alpha(), 128);
}

TEST(MorvoSpriteTest, ItsGlowIsWeakBesideTheBodyAndHasDiedAwayInTheCorner) {
  const QImage image = painted({520, 480});
  EXPECT_NEAR(at(image, 0, -45).alphaF(), 0.28 * 0.8, 0.03);
  EXPECT_LT(at(image, -64, -59).alphaF(), 0.05);
}

TEST(MorvoSpriteTest, FitsIntoAnyRectangleInItsMiddle) {
  const QImage wide = painted({390, 120});
  const QImage box = painted({130, 120});
  EXPECT_EQ(wide.pixel(195, 60), box.pixel(65, 60));
  EXPECT_EQ(qAlpha(wide.pixel(20, 60)), 0);
}

TEST(MorvoSpriteTest, LeavesThePainterAsItWas) {
  QImage image(130, 120, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&image);
  painter.translate(3, 4);
  const QTransform before = painter.transform();
  MorvoSprite::paint(painter, image.rect(), tint);
  EXPECT_EQ(painter.transform(), before);
}

TEST(MorvoSpriteTest, AnEmptyRectangleShowsNothing) {
  QImage image(130, 120, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  MorvoSprite::paint(painter, QRectF(40, 40, 0, 0), tint);
  painter.end();
  QImage empty(130, 120, QImage::Format_ARGB32_Premultiplied);
  empty.fill(Qt::transparent);
  EXPECT_EQ(image, empty);
}

} // namespace
} // namespace morvo
