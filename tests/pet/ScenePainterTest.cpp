#include "pet/ScenePainter.h"

#include "pet/PetFolder.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

using test::PetFolder;

const QString pet = QStringLiteral("custom-1");
const QString idle = QStringLiteral("idle");
constexpr int side = 200;

class ScenePainterTest : public testing::Test {
protected:
  ScenePainterTest() { m_sprites.setPersona(pet); }

  void frames(int count, QSize size, QColor color = Qt::red) {
    PetFolder::fill(m_folder.stateFolder(pet, idle), count, size, color);
  }
  void present() { m_scene.present(); }
  void pass(double time) {
    m_clock.advance(seconds(time));
    m_scene.advance(m_clock.instant());
  }
  [[nodiscard]] QImage painted(ScenePainter &painter, QSize size = {side, side}, double ratio = 1) {
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter onImage(&image);
    painter.paint(onImage, m_scene, QRectF(QPointF(), size), ratio);
    return image;
  }
  /// Long enough for each of four frames to be shown twice.
  void showTwice(ScenePainter &painter) {
    for (int tick = 0; tick < 8; ++tick) {
      static_cast<void>(painted(painter));
      pass(1.0 / 16);
    }
  }
  [[nodiscard]] QRect content(const QImage &image) const {
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (qAlpha(image.pixel(x, y)) > 127) {
          box = box.united(QRect(x, y, 1, 1));
        }
      }
    }
    return box;
  }

  PetFolder m_folder;
  test::ManualClock m_clock;
  test::MemorySettings m_settings;
  Setting m_setting{m_settings, Environment()};
  SeededRandomSource m_random{1};
  MorvoSprites m_sprites{m_folder.files()};
  PetScene m_scene{{side, side}, m_folder.files(), m_sprites, m_setting, m_clock, m_random};
  ScenePainter m_painter;
};

TEST_F(ScenePainterTest, thePetStandsWhereTheSceneSays) {
  frames(1, {400, 400});
  present();
  const QImage image = painted(m_painter);
  // 180 points wide and high, 8 above the floor, centred.
  EXPECT_EQ(content(image), QRect(10, 12, 180, 180));
  EXPECT_EQ(image.pixelColor(100, 100), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(5, 100).alpha(), 0);
}

TEST_F(ScenePainterTest, anUnpresentedSceneAndAnEmptyTargetDrawNothing) {
  frames(1, {8, 8});
  EXPECT_TRUE(content(painted(m_painter)).isEmpty());
  present();
  EXPECT_TRUE(content(painted(m_painter, {0, 0})).isEmpty());
  EXPECT_EQ(m_painter.framesDecoded(), 0U);
}

TEST_F(ScenePainterTest, theSceneIsFittedAndCentred) {
  frames(1, {400, 400});
  present();
  EXPECT_EQ(content(painted(m_painter, {400, 100})), QRect(155, 6, 90, 90));
  EXPECT_EQ(content(painted(m_painter, {100, 400})), QRect(5, 156, 90, 90));
}

TEST_F(ScenePainterTest, aDeviceOfTwicePixelsGetsTwiceThePicture) {
  frames(1, {800, 800});
  present();
  EXPECT_EQ(content(painted(m_painter, {side, side}, 2)), QRect(20, 24, 360, 360));
  EXPECT_EQ(m_painter.bytesKept(), 360 * 360 * 4);
}

TEST_F(ScenePainterTest, thePainterComesBackAsItWas) {
  frames(1, {8, 8});
  present();
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&image);
  painter.translate(3, 4);
  painter.setOpacity(0.5);
  const QTransform before = painter.transform();
  m_painter.paint(painter, m_scene, QRectF(0, 0, side, side), 1);
  EXPECT_EQ(painter.transform(), before);
  EXPECT_EQ(painter.opacity(), 0.5);
}

TEST_F(ScenePainterTest, enlargedPixelsStayHard) {
  QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::red);
  image.setPixelColor(1, 0, Qt::blue);
  image.setPixelColor(1, 1, Qt::blue);
  PetFolder::save(image, m_folder.stateFolder(pet, idle) + QStringLiteral("/1.png"));
  present();
  const QImage drawn = painted(m_painter);
  EXPECT_EQ(drawn.pixelColor(98, 100), QColor(Qt::red));
  EXPECT_EQ(drawn.pixelColor(101, 100), QColor(Qt::blue));
  EXPECT_EQ(m_painter.bytesKept(), 2 * 2 * 4);
}

TEST_F(ScenePainterTest, reducedPixelsAreAveraged) {
  QImage image(720, 720, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      image.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::black : Qt::white);
    }
  }
  PetFolder::save(image, m_folder.stateFolder(pet, idle) + QStringLiteral("/1.png"));
  present();
  EXPECT_NEAR(painted(m_painter).pixelColor(100, 100).red(), 127, 3);
}

TEST_F(ScenePainterTest, framesAreDecodedOneATickAndOnlyOnce) {
  frames(4, {8, 8});
  present();
  for (std::uint64_t tick = 1; tick <= 4; ++tick) {
    static_cast<void>(painted(m_painter));
    EXPECT_EQ(m_painter.framesDecoded(), tick);
    pass(1.0 / 16);
  }
  for (int tick = 0; tick < 20; ++tick) {
    static_cast<void>(painted(m_painter));
    pass(1.0 / 16);
  }
  EXPECT_EQ(m_painter.framesDecoded(), 4U);
}

TEST_F(ScenePainterTest, aNewSizePreparesAnewAndKeepsNoOldPixels) {
  frames(1, {400, 400});
  present();
  static_cast<void>(painted(m_painter));
  const auto kept = m_painter.bytesKept();
  static_cast<void>(painted(m_painter, {100, 100}));
  EXPECT_EQ(m_painter.framesDecoded(), 2U);
  EXPECT_EQ(m_painter.bytesKept(), kept / 4);
}

TEST_F(ScenePainterTest, transparentMarginsAreNotKept) {
  PetFolder::save(PetFolder::picture({180, 180}, QRect(80, 80, 18, 18)),
                  m_folder.stateFolder(pet, idle) + QStringLiteral("/1.png"));
  present();
  EXPECT_EQ(content(painted(m_painter)), QRect(90, 92, 18, 18));
  EXPECT_EQ(m_painter.bytesKept(), 20 * 20 * 4);
}

TEST_F(ScenePainterTest, theBudgetHoldsAndALongLoopKeepsWhatFits) {
  frames(10, {180, 180});
  present();
  constexpr qsizetype frameBytes = 180 * 180 * 4;
  ScenePainter painter({.pictures = frameBytes * 6, .packed = 0});
  for (int tick = 0; tick < 30; ++tick) {
    const QImage image = painted(painter);
    EXPECT_EQ(image.pixelColor(100, 100), QColor(Qt::red));
    EXPECT_LE(painter.bytesKept(), frameBytes * 6);
    pass(1.0 / 16);
  }
  // Ten in the first round, the four that do not fit in each of the next two.
  EXPECT_EQ(painter.framesDecoded(), 18U);
}

TEST_F(ScenePainterTest, framesOfOtherSetsGiveWay) {
  frames(2, {180, 180});
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("code")), 2, {180, 180}, Qt::blue);
  present();
  constexpr qsizetype frameBytes = 180 * 180 * 4;
  ScenePainter painter({.pictures = frameBytes * 2, .packed = 0});
  const auto show = [&] {
    for (int tick = 0; tick < 8; ++tick) {
      static_cast<void>(painted(painter));
      pass(1.0 / 24);
    }
  };
  show();
  EXPECT_EQ(painter.framesDecoded(), 2U);
  ASSERT_TRUE(m_scene.react(QStringLiteral("code")));
  show();
  EXPECT_EQ(painter.framesDecoded(), 4U);
  EXPECT_EQ(painted(painter).pixelColor(100, 100), QColor(Qt::blue));
  EXPECT_EQ(painter.bytesKept(), frameBytes * 2);
}

TEST_F(ScenePainterTest, forgettingGivesTheMemoryBack) {
  frames(1, {180, 180});
  present();
  static_cast<void>(painted(m_painter));
  m_painter.forgetFrames();
  EXPECT_EQ(m_painter.bytesKept(), 0);
  EXPECT_FALSE(content(painted(m_painter)).isEmpty());
}

TEST_F(ScenePainterTest, aFrameThatRotsLeavesTheLastGoodPictureStanding) {
  frames(2, {180, 180});
  present();
  static_cast<void>(painted(m_painter));
  PetFolder::write(m_folder.stateFolder(pet, idle) + QStringLiteral("/2.png"), "rot");
  pass(1.0 / 16);
  ASSERT_TRUE(m_scene.pet()->texture()->path.endsWith(u"/2.png"));
  EXPECT_EQ(painted(m_painter).pixelColor(100, 100), QColor(Qt::red));
}

TEST_F(ScenePainterTest, aLoopThatRotsAsAWholeKeepsItsLastPictureAndIsReadOnceOnly) {
  frames(2, {180, 180});
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("code")), 2, {180, 180}, Qt::blue);
  present();
  static_cast<void>(painted(m_painter));
  ASSERT_TRUE(m_scene.react(QStringLiteral("code")));
  for (const auto *name : {u"/1.png", u"/2.png"}) {
    ASSERT_TRUE(QFile::remove(m_folder.stateFolder(pet, QStringLiteral("code")) +
                              QString::fromUtf16(name)));
  }
  for (int tick = 0; tick < 10; ++tick) {
    EXPECT_EQ(painted(m_painter).pixelColor(100, 100), QColor(Qt::red));
    pass(1.0 / 24);
  }
  EXPECT_EQ(m_painter.framesDecoded(), 3U);
}

TEST_F(ScenePainterTest, aPetWhoseOnlyFrameRotsBeforeItWasEverDrawnDrawsNothing) {
  frames(1, {180, 180});
  present();
  PetFolder::write(m_folder.stateFolder(pet, idle) + QStringLiteral("/1.png"), "rot");
  EXPECT_TRUE(content(painted(m_painter)).isEmpty());
}

TEST_F(ScenePainterTest, anEmptyFrameIsNoBrokenOneAndDrawsNothing) {
  frames(2, {180, 180});
  PetFolder::save(PetFolder::picture({180, 180}, {}),
                  m_folder.stateFolder(pet, idle) + QStringLiteral("/2.png"));
  present();
  static_cast<void>(painted(m_painter));
  pass(1.0 / 16);
  EXPECT_TRUE(content(painted(m_painter)).isEmpty());
}

TEST_F(ScenePainterTest, rewrittenFramesTakeThePlaceOfTheOldOnes) {
  frames(4, {180, 180});
  present();
  constexpr qsizetype frameBytes = 180 * 180 * 4;
  ScenePainter painter({.pictures = frameBytes * 4, .packed = 0});
  showTwice(painter);
  ASSERT_EQ(painter.framesDecoded(), 4U);
  frames(4, {180, 180}, Qt::blue);
  m_scene.setPersona(pet);
  showTwice(painter);
  EXPECT_EQ(painted(painter).pixelColor(100, 100), QColor(Qt::blue));
  EXPECT_EQ(painter.framesDecoded(), 8U);
  showTwice(painter);
  EXPECT_EQ(painter.framesDecoded(), 8U);
  EXPECT_EQ(painter.bytesKept(), frameBytes * 4);
}

TEST_F(ScenePainterTest, framesRewrittenUnderOtherNamesTakeThePlaceOfTheOldOnes) {
  frames(4, {180, 180});
  present();
  constexpr qsizetype frameBytes = 180 * 180 * 4;
  ScenePainter painter({.pictures = frameBytes * 4, .packed = 0});
  showTwice(painter);
  const QString folder = m_folder.stateFolder(pet, idle);
  frames(2, {180, 180}, Qt::blue);
  for (const auto *name : {u"3", u"4"}) {
    const QString file = folder + u'/' + QString::fromUtf16(name);
    ASSERT_TRUE(QFile::rename(file + QStringLiteral(".png"), file + QStringLiteral("0.png")));
  }
  m_scene.setPersona(pet);
  showTwice(painter);
  const auto decoded = painter.framesDecoded();
  showTwice(painter);
  EXPECT_EQ(painter.framesDecoded(), decoded);
}

TEST_F(ScenePainterTest, aLongLoopOfLargeFramesIsDecodedOnce) {
  constexpr int pixels = 560;
  constexpr int count = 60;
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  const QString folder = m_folder.stateFolder(pet, idle);
  for (int index = 1; index <= count; ++index) {
    image.fill(Qt::transparent);
    QPainter onImage(&image);
    onImage.setRenderHint(QPainter::Antialiasing);
    QLinearGradient shade(0, 0, pixels, pixels);
    shade.setColorAt(0, Qt::white);
    shade.setColorAt(1, QColor::fromHsv(index * 5, 255, 200));
    onImage.setBrush(shade);
    onImage.drawEllipse(QRectF(1, 1, pixels - 2, pixels - 2 - index));
    onImage.end();
    PetFolder::save(image, folder + u'/' + QString::number(index) + QStringLiteral(".png"));
  }
  m_scene.setSize({pixels / 2 / 0.9, pixels / 2 / 0.9});
  present();
  ScenePainter painter;
  for (int tick = 0; tick < 3 * count; ++tick) {
    static_cast<void>(painted(painter, QSize(312, 312), 2));
    pass(1.0 / 16);
  }
  EXPECT_EQ(painter.framesDecoded(), static_cast<std::uint64_t>(count));
  EXPECT_LE(painter.bytesKept(), ScenePainter::standardBudget.pictures);
  EXPECT_GT(painter.bytesPacked(), 0);
  EXPECT_LE(painter.bytesPacked(), ScenePainter::standardBudget.packed);
}

TEST_F(ScenePainterTest, aPackedFrameLooksAsBefore) {
  PetFolder::save(PetFolder::picture({360, 360}, QRect(31, 40, 100, 300), QColor(9, 200, 77, 130)),
                  m_folder.stateFolder(pet, idle) + QStringLiteral("/1.png"));
  present();
  ScenePainter packing({.pictures = 0, .packed = 1'000'000});
  const QImage plain = painted(m_painter);
  EXPECT_EQ(painted(packing), plain);
  EXPECT_EQ(painted(packing), plain);
  EXPECT_EQ(packing.framesDecoded(), 1U);
  EXPECT_EQ(packing.bytesKept(), 0);
  EXPECT_GT(packing.bytesPacked(), 0);
  packing.forgetFrames();
  EXPECT_EQ(packing.bytesPacked(), 0);
}

TEST_F(ScenePainterTest, whatFitsNeitherBudgetIsDecodedEachTime) {
  frames(1, {180, 180});
  present();
  ScenePainter none({.pictures = 0, .packed = 0});
  for (std::uint64_t tick = 1; tick <= 3; ++tick) {
    EXPECT_EQ(painted(none).pixelColor(100, 100), QColor(Qt::red));
    EXPECT_EQ(none.framesDecoded(), tick);
  }
  EXPECT_EQ(none.bytesKept() + none.bytesPacked(), 0);
}

TEST_F(ScenePainterTest, aDeviceOfOneAndAHalfPixelsGetsThatPicture) {
  frames(1, {800, 800});
  present();
  EXPECT_EQ(content(painted(m_painter, {side, side}, 1.5)), QRect(15, 18, 270, 270));
  EXPECT_EQ(m_painter.bytesKept(), 270 * 270 * 4);
}

TEST_F(ScenePainterTest, alphaAndBreathActOnThePicture) {
  frames(1, {180, 180});
  m_scene.setOpacity(0.5);
  present();
  EXPECT_NEAR(painted(m_painter).pixelColor(100, 100).alpha(), 128, 1);
  m_scene.setOpacity(1);
  m_scene.setMood(QStringLiteral("sleepy"));
  pass(0.5);
  // Squashed to nine tenths, on the same feet; breathing moves the head by a pixel or two.
  const QRect box = content(painted(m_painter));
  EXPECT_EQ(box.bottom(), 191);
  EXPECT_NEAR(box.height(), 162, 3);
}

TEST_F(ScenePainterTest, rawFramesAreDrawnWithoutTheirMargin) {
  m_sprites.setPersona(QStringLiteral("morvo"));
  const QString folder = m_folder.builtInFolder(QStringLiteral("morvo"), idle);
  PetFolder::save(PetFolder::picture({360, 360}, QRect(90, 90, 90, 90)),
                  folder + QStringLiteral("/1.png"));
  present();
  // The square of the content has a side of 0.25 + 0.16 of the frame.
  const QRect box = content(painted(m_painter));
  EXPECT_NEAR(box.width(), 180 * 0.25 / 0.41, 2);
  EXPECT_NEAR(box.center().x(), 100, 1.5);
}

TEST_F(ScenePainterTest, thePetWithoutFramesIsPainted) {
  present();
  const QImage image = painted(m_painter);
  EXPECT_EQ(image.pixelColor(100, 120).alpha(), 255);
  EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
}

TEST_F(ScenePainterTest, tellsHowStrongThePetIsAndNotItsHearts) {
  ScenePainter painter;
  EXPECT_EQ(painter.strongestAlpha(), 0);
  frames(2, {8, 8}, QColor(255, 0, 0, 100));
  present();
  static_cast<void>(painted(painter));
  EXPECT_EQ(painter.strongestAlpha(), 100);
  m_scene.setOpacity(0.5);
  m_scene.emitHearts();
  pass(0.3);
  static_cast<void>(painted(painter));
  EXPECT_EQ(painter.strongestAlpha(), 50);
}

TEST_F(ScenePainterTest, heartsArePaintedAboveThePet) {
  frames(1, {180, 180}, Qt::black);
  present();
  m_scene.emitHearts();
  pass(0.4);
  const QImage image = painted(m_painter);
  int coloured = 0;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      coloured += qBlue(image.pixel(x, y)) > 120 ? 1 : 0;
    }
  }
  EXPECT_GT(coloured, 50);
}

} // namespace
} // namespace morvo
