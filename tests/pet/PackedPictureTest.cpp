#include "pet/PackedPicture.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

/// So many colours, one after the other, over all pixels.
QImage pictureOf(int colors, QImage::Format format = QImage::Format_ARGB32_Premultiplied) {
  QImage image(64, 48, format);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const int color = (y * image.width() + x) % colors;
      reinterpret_cast<QRgb *>(image.scanLine(y))[x] = qRgba(color & 0xff, color >> 8, 3, 255);
    }
  }
  return image;
}

class PackedPictureTest : public testing::TestWithParam<int> {};

TEST_P(PackedPictureTest, comesBackAsItWas) {
  for (const auto format : {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB32}) {
    const QImage image = pictureOf(GetParam(), format);
    const QImage back = PackedPicture(image).unpacked();
    EXPECT_EQ(back, image);
    EXPECT_EQ(back.format(), format);
    EXPECT_LT(PackedPicture(image).bytes(), image.sizeInBytes());
  }
}

INSTANTIATE_TEST_SUITE_P(Colors, PackedPictureTest, testing::Values(1, 2, 255, 256, 257, 3000));

TEST(PackedPicture, fewColoursTakeAByteAPixelAndTheirTable) {
  EXPECT_EQ(PackedPicture(pictureOf(256)).bytes(), 64 * 48 + 256 * 4);
}

TEST(PackedPicture, nothingIsPackedIntoNothing) {
  EXPECT_TRUE(PackedPicture().unpacked().isNull());
  EXPECT_TRUE(PackedPicture(QImage()).unpacked().isNull());
  EXPECT_EQ(PackedPicture(QImage()).bytes(), 0);
}

} // namespace
} // namespace morvo
