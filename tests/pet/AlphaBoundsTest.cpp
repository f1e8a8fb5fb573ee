#include "pet/AlphaBounds.h"

#include "pet/PetFolder.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

using test::PetFolder;

TEST(AlphaBoundsTest, boxAroundTheContentInFractions) {
  const QImage image = PetFolder::picture({100, 50}, QRect(10, 5, 20, 30));
  EXPECT_EQ(AlphaBounds::normalised(image, 120), QRectF(0.1, 0.1, 0.2, 0.6));
}

TEST(AlphaBoundsTest, faintPixelsAreNoContent) {
  EXPECT_FALSE(AlphaBounds::normalised(
      PetFolder::picture({40, 40}, QRect(0, 0, 40, 40), QColor(255, 255, 255, 16)), 120));
  EXPECT_EQ(AlphaBounds::normalised(
                PetFolder::picture({40, 40}, QRect(0, 0, 40, 40), QColor(255, 255, 255, 17)), 120),
            QRectF(0, 0, 1, 1));
}

TEST(AlphaBoundsTest, largePicturesAreLookedAtSmall) {
  const auto box =
      AlphaBounds::normalised(PetFolder::picture({600, 300}, QRect(300, 100, 150, 100)), 120);
  ASSERT_TRUE(box);
  EXPECT_NEAR(box->x(), 0.5, 0.02);
  EXPECT_NEAR(box->y(), 1.0 / 3, 0.03);
  EXPECT_NEAR(box->width(), 0.25, 0.02);
  EXPECT_NEAR(box->height(), 1.0 / 3, 0.04);
}

TEST(AlphaBoundsTest, extremeShapesAndNoPicture) {
  EXPECT_FALSE(AlphaBounds::normalised({}, 120));
  EXPECT_EQ(AlphaBounds::normalised(PetFolder::picture({5000, 1}, QRect(0, 0, 5000, 1)), 120),
            QRectF(0, 0, 1, 1));
}

TEST(AlphaBoundsTest, unionOfBoxes) {
  const QRectF a(0, 0, 0.5, 0.5);
  const QRectF b(0.75, 0.25, 0.25, 0.5);
  EXPECT_EQ(AlphaBounds::united(a, b), QRectF(0, 0, 1, 0.75));
  EXPECT_EQ(AlphaBounds::united(a, {}), a);
  EXPECT_EQ(AlphaBounds::united({}, b), b);
  EXPECT_FALSE(AlphaBounds::united({}, {}));
}

} // namespace
} // namespace morvo
