#include "panels/SymbolPainter.h"

#include <QImage>

#include <gtest/gtest.h>

namespace morvo {
namespace {

QImage drawn(const QString &name, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  SymbolPainter::paint(painter, name, image.rect(), Qt::red);
  return image;
}

int inkedPixels(const QImage &image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      count += image.pixelColor(x, y).alpha() > 127 ? 1 : 0;
    }
  }
  return count;
}

bool touchesEdge(const QImage &image) {
  for (int i = 0; i < image.width(); ++i) {
    const int last = image.width() - 1;
    if (image.pixelColor(i, 0).alpha() > 127 || image.pixelColor(i, last).alpha() > 127 ||
        image.pixelColor(0, i).alpha() > 127 || image.pixelColor(last, i).alpha() > 127) {
      return true;
    }
  }
  return false;
}

class Symbol : public testing::TestWithParam<const char16_t *> {};

TEST_P(Symbol, IsDrawnWholeInsideItsSquare) {
  const QString name = QString::fromUtf16(GetParam());
  EXPECT_TRUE(SymbolPainter::knows(name));
  const QImage image = drawn(name, 96);
  EXPECT_GT(inkedPixels(image), 96 * 96 / 40);
  EXPECT_FALSE(touchesEdge(image));
}

INSTANTIATE_TEST_SUITE_P(SymbolPainterTest, Symbol,
                         testing::Values(u"bubble.left.and.bubble.right", u"chart.bar", u"pawprint",
                                         u"gearshape", u"exclamationmark.shield.fill",
                                         u"shield.lefthalf.filled", u"arrow.up.circle.fill",
                                         u"theatermasks", u"pencil", u"trash", u"arrow.clockwise",
                                         u"chevron.down"));

TEST(SymbolPainterTest, AnUnknownNameDrawsNothing) {
  EXPECT_FALSE(SymbolPainter::knows(QStringLiteral("nothing")));
  EXPECT_EQ(inkedPixels(drawn(QStringLiteral("nothing"), 24)), 0);
}

} // namespace
} // namespace morvo
