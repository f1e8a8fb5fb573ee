#include "pet/MenubarFrames.h"

#include "pet/FrameFile.h"
#include "pet/PetFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sys/stat.h>

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

TEST(MenubarFramesTest, noLinkLeadsOutOfThePetsFolder) {
  const PetFolder folder;
  const QString elsewhere = folder.path(QStringLiteral("elsewhere"));
  ASSERT_TRUE(QDir().mkpath(elsewhere));
  PetFolder::fill(elsewhere, 3);
  const QString petFolder = folder.files().userDirectory(pet);
  ASSERT_TRUE(QDir().mkpath(petFolder));
  ASSERT_TRUE(QFile::link(elsewhere, petFolder + QStringLiteral("/idle")));
  MenubarFrames frames(folder.files());
  EXPECT_TRUE(frames.frameURLs(pet).isEmpty());
  EXPECT_TRUE(frames.idle(pet, 18, 1).empty());

  ASSERT_TRUE(QFile::remove(petFolder + QStringLiteral("/idle")));
  const QString idleFolder = folder.stateFolder(pet, idle);
  PetFolder::fill(idleFolder, 1);
  ASSERT_TRUE(
      QFile::link(elsewhere + QStringLiteral("/2.png"), idleFolder + QStringLiteral("/2.png")));
  ASSERT_TRUE(
      QFile::link(idleFolder + QStringLiteral("/1.png"), idleFolder + QStringLiteral("/3.png")));
  EXPECT_EQ(frames.frameURLs(pet), QStringList({idleFolder + QStringLiteral("/1.png"),
                                                idleFolder + QStringLiteral("/3.png")}));
}

TEST(MenubarFramesTest, whatIsNoRegularFileIsNeverOpened) {
  const PetFolder folder;
  const QString idleFolder = folder.stateFolder(pet, idle);
  PetFolder::fill(idleFolder, 1);
  // Opening a pipe to read waits for a writer for ever.
  ASSERT_EQ(::mkfifo(QFile::encodeName(idleFolder + QStringLiteral("/2.png")).constData(), 0600),
            0);
  MenubarFrames frames(folder.files());
  EXPECT_EQ(frames.idle(pet, 18, 1).size(), 1U);
}

TEST(MenubarFramesTest, aFrameThatBecameAPipeIsNeverWaitedFor) {
  const PetFolder folder;
  const QString pipe = folder.stateFolder(pet, idle) + QStringLiteral("/1.png");
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_TRUE(FrameFile::decode(pipe).isNull());
}

TEST(MenubarFramesTest, aLargeFrameGivesTheIconOfTheSameFrameInSmall) {
  const PetFolder folder;
  const QString other = QStringLiteral("large");
  const auto painted = [](int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = side / 4; y < side; ++y) {
      for (int x = 0; x < side * 3 / 4; ++x) {
        image.setPixelColor(x, y, QColor(x * 255 / side, y * 255 / side, 90));
      }
    }
    return image;
  };
  PetFolder::save(painted(512), folder.stateFolder(pet, idle) + QStringLiteral("/1.png"));
  PetFolder::save(painted(2048), folder.stateFolder(other, idle) + QStringLiteral("/1.png"));
  MenubarFrames frames(folder.files());
  const auto small = frames.cells(pet);
  const auto large = frames.cells(other);
  ASSERT_EQ(small.size(), 1U);
  ASSERT_EQ(large.size(), 1U);
  ASSERT_EQ(small.front().size(), large.front().size());
  EXPECT_EQ(std::max(large.front().width(), large.front().height()), 13);
  for (int y = 0; y < small.front().height(); ++y) {
    for (int x = 0; x < small.front().width(); ++x) {
      const QColor a = small.front().pixelColor(x, y);
      const QColor b = large.front().pixelColor(x, y);
      EXPECT_NEAR(a.alpha(), b.alpha(), 12);
      EXPECT_NEAR(a.red() * a.alpha() / 255, b.red() * b.alpha() / 255, 12);
      EXPECT_NEAR(a.green() * a.alpha() / 255, b.green() * b.alpha() / 255, 12);
    }
  }
}

struct LargeRow {
  int frames;
  QSize size;
  std::size_t icons;
};

class LargeFramesTest : public testing::TestWithParam<LargeRow> {};

TEST_P(LargeFramesTest, areThinnedUntilTheyAreDecodedSoon) {
  const PetFolder folder;
  const QString idleFolder = folder.stateFolder(pet, idle);
  QImage large(GetParam().size, QImage::Format_Mono);
  large.fill(0);
  PetFolder::save(large, idleFolder + QStringLiteral("/1.png"));
  for (int index = 2; index <= GetParam().frames; ++index) {
    ASSERT_TRUE(QFile::copy(idleFolder + QStringLiteral("/1.png"),
                            idleFolder + u'/' + QString::number(index) + QStringLiteral(".png")));
  }
  MenubarFrames frames(folder.files());
  EXPECT_EQ(frames.cells(pet).size(), GetParam().icons);
}

INSTANTIATE_TEST_SUITE_P(All, LargeFramesTest,
                         testing::Values(LargeRow{23, {1024, 1024}, 23},
                                         LargeRow{23, {5700, 5700}, 1},
                                         LargeRow{12, {4096, 2048}, 4},
                                         LargeRow{11, {4096, 2048}, 4},
                                         LargeRow{5, {4096, 2048}, 3}));

TEST(MenubarFramesTest, oneLargeFrameAmongSmallOnesIsLeftOut) {
  const PetFolder folder;
  const QString idleFolder = folder.stateFolder(pet, idle);
  PetFolder::fill(idleFolder, 4);
  QImage large(5700, 5700, QImage::Format_Mono);
  large.fill(0);
  for (const int index : {5, 6, 7}) {
    PetFolder::save(large, idleFolder + u'/' + QString::number(index) + QStringLiteral(".png"));
  }
  MenubarFrames frames(folder.files());
  EXPECT_THAT(frames.cells(pet), testing::SizeIs(testing::Le(3)));
}

TEST(MenubarFramesTest, aFolderOfNoPicturesHasNoIcons) {
  const PetFolder folder;
  const QString idleFolder = folder.stateFolder(pet, idle);
  for (int i = 0; i < 200; ++i) {
    PetFolder::write(idleFolder + u'/' + QString::number(i) + QStringLiteral("帧.png"),
                     i % 2 == 0 ? QByteArray() : QByteArray(100, 'x'));
  }
  MenubarFrames frames(folder.files());
  EXPECT_TRUE(frames.idle(pet, 18, 1).empty());
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
