#include "pet/MenubarFrames.h"

#include "pet/PetFolder.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

using test::PetFolder;

const QString pet = QStringLiteral("morvo");
const QString idle = QStringLiteral("idle");

struct ThinningRow {
  int frames;
  int step;
  std::size_t icons;
};

class ThinningTest : public testing::TestWithParam<ThinningRow> {};

TEST_P(ThinningTest, keepsAboutTwelveIcons) {
  const PetFolder folder;
  PetFolder::fill(folder.stateFolder(pet, idle), GetParam().frames);
  MenubarFrames frames(folder.files());
  EXPECT_EQ(MenubarFrames::step(GetParam().frames), GetParam().step);
  EXPECT_EQ(frames.idle(pet, 18, 1).size(), GetParam().icons);
}

INSTANTIATE_TEST_SUITE_P(All, ThinningTest,
                         testing::Values(ThinningRow{1, 1, 1}, ThinningRow{11, 1, 11},
                                         ThinningRow{12, 1, 12}, ThinningRow{23, 1, 23},
                                         ThinningRow{24, 2, 12}, ThinningRow{60, 5, 12}));

TEST(MenubarFramesTest, userFramesComeBeforeTheBuiltInOnes) {
  const PetFolder folder;
  PetFolder::fill(folder.builtInFolder(pet, idle), 2);
  MenubarFrames frames(folder.files());
  EXPECT_EQ(frames.frameURLs(pet).size(), 2);
  PetFolder::fill(folder.stateFolder(pet, idle), 3);
  EXPECT_EQ(frames.frameURLs(pet).size(), 3);
  EXPECT_TRUE(frames.frameURLs(QStringLiteral("../pets/morvo")).isEmpty());
}

TEST(MenubarFramesTest, newFramesNeverReachAPetWhoseIconsAreMade) {
  const PetFolder folder;
  MenubarFrames frames(folder.files());
  EXPECT_TRUE(frames.idle(pet, 18, 1).empty());
  const QString idleFolder = folder.stateFolder(pet, idle);
  PetFolder::fill(idleFolder, 2);
  EXPECT_EQ(frames.idle(pet, 18, 1).size(), 2U);
  PetFolder::fill(idleFolder, 5);
  EXPECT_EQ(frames.idle(pet, 18, 1).size(), 2U);
}

TEST(MenubarFramesTest, whatCannotBeDecodedIsLeftOut) {
  const PetFolder folder;
  const QString idleFolder = folder.stateFolder(pet, idle);
  PetFolder::fill(idleFolder, 1);
  PetFolder::write(idleFolder + QStringLiteral("/0.png"), "");
  PetFolder::write(idleFolder + QStringLiteral("/2.png"), "\x89PNG\r\n\x1a\n");
  MenubarFrames frames(folder.files());
  EXPECT_EQ(frames.idle(pet, 18, 1).size(), 1U);
}

TEST(MenubarFramesTest, iconsHaveTheirPointsAtTheRatioAsked) {
  const QImage icon = MenubarFrames::cropAndFit(PetFolder::picture({64, 64}, QRect(8, 8, 48, 48)),
                                                QRectF(0, 0, 1, 1), 18, 13, 2);
  EXPECT_EQ(icon.size(), QSize(36, 36));
  EXPECT_EQ(icon.devicePixelRatio(), 2);
}

TEST(MenubarFramesTest, theCropStaysWithinThePictureAndKeepsItsAir) {
  // Content that touches the border is padded on the free side only.
  const QImage image = PetFolder::picture({100, 100}, QRect(0, 0, 40, 100));
  const QImage icon = MenubarFrames::cropAndFit(image, QRectF(0, 0, 0.4, 1), 100, 13, 1);
  // 52 by 100 pixels on 7 by 13 cells of 100/13 points, centred.
  EXPECT_EQ(qAlpha(icon.pixel(20, 50)), 0);
  EXPECT_GT(qAlpha(icon.pixel(30, 50)), 200);
  EXPECT_GT(qAlpha(icon.pixel(50, 99)), 200);
  EXPECT_EQ(qAlpha(icon.pixel(78, 50)), 0);
}

TEST(MenubarFramesTest, everyCellIsAHardBlock) {
  QImage image(130, 130, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      image.setPixelColor(x, y, QColor(x, y, 100));
    }
  }
  const QImage icon = MenubarFrames::cropAndFit(image, QRectF(0, 0, 1, 1), 130, 13, 1);
  for (int y = 0; y < icon.height(); ++y) {
    for (int x = 0; x < icon.width(); ++x) {
      ASSERT_EQ(icon.pixel(x, y), icon.pixel(x / 10 * 10, y / 10 * 10)) << x << ' ' << y;
    }
  }
  EXPECT_NE(icon.pixel(5, 5), icon.pixel(15, 5));
}

} // namespace
} // namespace morvo
