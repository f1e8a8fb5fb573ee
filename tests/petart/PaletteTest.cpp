#include "Palette.h"

#include <gtest/gtest.h>

#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace morvo {
namespace {

QImage gradient() {
  QImage picture(128, 128, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QLinearGradient shade(0, 0, 128, 128);
  shade.setColorAt(0, QColor(20, 60, 180));
  shade.setColorAt(1, QColor(250, 240, 160));
  painter.fillRect(16, 16, 96, 96, shade);
  return picture;
}

TEST(PaletteTest, TheEmptyGroundStaysEmpty) {
  const QImage reduced = Palette::reduced(gradient());
  EXPECT_EQ(qAlpha(reduced.pixel(0, 0)), 0);
  EXPECT_EQ(qAlpha(reduced.pixel(127, 60)), 0);
  EXPECT_EQ(qAlpha(reduced.pixel(64, 64)), 255);
}

TEST(PaletteTest, NoColourIsFarFromTheOneItStandsFor) {
  const QImage picture = gradient();
  const QImage reduced =
      Palette::reduced(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
  constexpr int step = 6;
  for (int y = 16; y < 112; ++y) {
    for (int x = 16; x < 112; ++x) {
      const QColor before(picture.pixel(x, y));
      const QColor after(reduced.pixel(x, y));
      ASSERT_LE(std::abs(before.red() - after.red()), step);
      ASSERT_LE(std::abs(before.green() - after.green()), step);
      ASSERT_LE(std::abs(before.blue() - after.blue()), step);
    }
  }
}

TEST(PaletteTest, FewColoursStayExactlyAsTheyAre) {
  QImage picture(8, 8, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  picture.setPixelColor(2, 2, QColor(255, 0, 0));
  picture.setPixelColor(3, 2, QColor(0, 128, 255));
  EXPECT_EQ(Palette::reduced(picture).convertToFormat(picture.format()), picture);
}

TEST(PaletteTest, APictureWithNothingOnItIsNoTrouble) {
  QImage picture(8, 8, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  EXPECT_EQ(qAlpha(Palette::reduced(picture).pixel(4, 4)), 0);
}

TEST(PaletteTest, TheSamePixelsGiveTheSamePalette) {
  EXPECT_EQ(Palette::reduced(gradient()), Palette::reduced(gradient()));
}

} // namespace
} // namespace morvo
