#include "pet/MorvoSprites.h"

#include "pet/ContentFile.h"
#include "pet/FrameFile.h"
#include "pet/PetFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sys/stat.h>

namespace morvo {
namespace {

using test::PetFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QString pet = QStringLiteral("custom-1");
const QString idle = QStringLiteral("idle");
const QString walk = QStringLiteral("walk");

class MorvoSpritesTest : public testing::Test {
protected:
  MorvoSpritesTest() { m_sprites.setPersona(pet); }

  [[nodiscard]] QStringList names(const QString &state) {
    QStringList names;
    for (const auto &frame : m_sprites.frames(state)) {
      names.append(frame.path.section(u'/', -2));
    }
    return names;
  }
  [[nodiscard]] static QStringList sorted(const QStringList &names) {
    QStringList files;
    for (const QString &name : names) {
      files.append(QStringLiteral("/x/") + name + QStringLiteral(".png"));
    }
    QStringList result;
    for (const QString &file : MorvoSprites::sortFrameURLs(files)) {
      result.append(file.section(u'/', -1).chopped(4));
    }
    return result;
  }

  PetFolder m_folder;
  MorvoSprites m_sprites{m_folder.files()};
};

TEST_F(MorvoSpritesTest, framesAreOrderedByNumber) {
  EXPECT_THAT(sorted({QStringLiteral("10"), QStringLiteral("2"), QStringLiteral("1")}),
              ElementsAre(u"1", u"2", u"10"));
  EXPECT_THAT(sorted({QStringLiteral("-2"), QStringLiteral("-10"), QStringLiteral("1")}),
              ElementsAre(u"-10", u"-2", u"1"));
}

TEST_F(MorvoSpritesTest, otherNamesAreInNaturalOrder) {
  EXPECT_THAT(sorted({QStringLiteral("a10"), QStringLiteral("a2")}), ElementsAre(u"a2", u"a10"));
  EXPECT_THAT(sorted({QStringLiteral("b"), QStringLiteral("10"), QStringLiteral("9")}),
              ElementsAre(u"9", u"10", u"b"));
}

TEST_F(MorvoSpritesTest, anyNamesGiveOneOrderWhateverTheOrderOfTheFiles) {
  const QStringList names{QStringLiteral("01"), QStringLiteral("1"),   QStringLiteral("+7"),
                          QStringLiteral("3a"), QStringLiteral("5"),   QStringLiteral("浮动1"),
                          QStringLiteral("é"),  QStringLiteral("مشي"), QStringLiteral("😀")};
  QStringList shuffled = names;
  std::ranges::reverse(shuffled);
  EXPECT_EQ(sorted(names), sorted(shuffled));
}

TEST_F(MorvoSpritesTest, framesAreDescribedWithoutPixels) {
  PetFolder::fill(m_folder.stateFolder(pet, walk), 3, {20, 10});
  ASSERT_THAT(m_sprites.frames(walk), SizeIs(3));
  const SpriteFrame &frame = m_sprites.frames(walk).front();
  EXPECT_EQ(frame.size, QSizeF(20, 10));
  EXPECT_EQ(frame.crop, QRectF(0, 0, 1, 1));
  EXPECT_TRUE(frame.picture.isNull());
  EXPECT_TRUE(m_sprites.hasFrames(walk));
  EXPECT_TRUE(m_sprites.isDiskBakedPersona());
}

TEST_F(MorvoSpritesTest, newFilesAreSeenWhenThePersonaIsSetAnew) {
  EXPECT_THAT(m_sprites.frames(walk), IsEmpty());
  EXPECT_FALSE(m_sprites.hasFrame(walk));
  PetFolder::fill(m_folder.stateFolder(pet, walk), 2);
  EXPECT_THAT(m_sprites.frames(walk), IsEmpty());
  m_sprites.setPersona(pet);
  EXPECT_THAT(m_sprites.frames(walk), SizeIs(2));
  EXPECT_TRUE(m_sprites.hasFrames(walk));
}

TEST_F(MorvoSpritesTest, aCustomPetWithOnlyAWalkWalksWhenIdle) {
  PetFolder::fill(m_folder.stateFolder(pet, walk), 2);
  EXPECT_THAT(names(idle), ElementsAre(u"walk/1.png", u"walk/2.png"));
}

TEST_F(MorvoSpritesTest, theDefaultPetWithoutIdleFallsToTheResources) {
  const QString standard = QStringLiteral("morvo");
  m_sprites.setPersona(standard);
  PetFolder::fill(m_folder.stateFolder(standard, walk), 1);
  PetFolder::fill(m_folder.builtInFolder(standard, idle), 2);
  EXPECT_THAT(names(idle), ElementsAre(u"idle/1.png", u"idle/2.png"));
}

TEST_F(MorvoSpritesTest, theRescueFollowsThePacksLoopsThenItsRestingActions) {
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("a_last")), 1);
  EXPECT_THAT(names(idle), ElementsAre(u"a_last/1.png"));
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("nap")), 1);
  m_folder.writePack(pet, R"({"actions":[{"id":"gone","loop":true},{"id":"","frameSet":""},
      {"id":"snooze","frameSet":"nap","tags":["low_energy"]}]})");
  m_sprites.setPersona(pet);
  EXPECT_THAT(names(idle), ElementsAre(u"nap/1.png"));
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("zz")), 1);
  m_folder.writePack(pet, R"({"actions":[{"id":"nap","loop":true},{"id":"rest","frameSet":"zz"}],
      "loops":[{"mood":"calm","action":"rest"}],"tier":3})");
  m_sprites.setPersona(pet);
  EXPECT_THAT(names(idle), ElementsAre(u"zz/1.png"));
}

TEST_F(MorvoSpritesTest, statesAreTheFoldersWithPictures) {
  EXPECT_THAT(m_sprites.availableStateNames(),
              ElementsAre(u"alert", u"celebrate", u"greet", u"idle", u"sleep"));
  EXPECT_FALSE(m_sprites.isDiskBakedPersona());
  static_cast<void>(m_folder.stateFolder(pet, QStringLiteral("empty")));
  PetFolder::write(m_folder.stateFolder(pet, QStringLiteral("text")) + QStringLiteral("/a.txt"),
                   "x");
  PetFolder::fill(m_folder.stateFolder(pet, walk), 1);
  PetFolder::fill(m_folder.stateFolder(pet, QStringLiteral("跑")), 1);
  EXPECT_THAT(m_sprites.availableStateNames(), ElementsAre(u"walk", u"跑"));
}

TEST_F(MorvoSpritesTest, onePictureServesAStateWithoutFolder) {
  PetFolder::fill(m_folder.builtInFolder(pet, {}), 0);
  PetFolder::save(PetFolder::picture({4, 4}, QRect(0, 0, 4, 4)),
                  m_folder.files().resourceDirectory(pet) + QStringLiteral("/hop.png"));
  EXPECT_THAT(m_sprites.frames(QStringLiteral("hop")), SizeIs(1));
  EXPECT_FALSE(m_sprites.hasFrames(QStringLiteral("hop")));
  const QString shared = m_folder.files().home.file(QStringLiteral(".morvo/pets/hop.png"));
  PetFolder::write(shared, "");
  EXPECT_EQ(m_sprites.singleURL(QStringLiteral("hop")), shared);
}

TEST_F(MorvoSpritesTest, filesThatHoldNoPictureAreSkipped) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 2);
  PetFolder::write(folder + QStringLiteral("/3.png"), "");
  PetFolder::write(folder + QStringLiteral("/4.png"), "\x89PNG\r\n\x1a\n");
  PetFolder::write(folder + QStringLiteral("/5.png"), QByteArray(5000, 'x'));
  ASSERT_EQ(::mkfifo(QFile::encodeName(folder + QStringLiteral("/6.png")).constData(), 0600), 0);
  ASSERT_TRUE(QDir(folder).mkdir(QStringLiteral("7.png")));
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png", u"walk/2.png"));
}

TEST_F(MorvoSpritesTest, tornPicturesAreSkipped) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 2, {64, 64});
  QFile whole(folder + QStringLiteral("/1.png"));
  ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
  const QByteArray bytes = whole.readAll();
  for (const qsizetype lost : {1, 4, 12, 13, 40}) {
    PetFolder::write(folder + QStringLiteral("/torn%1.png").arg(lost), bytes.chopped(lost));
  }
  PetFolder::write(folder + QStringLiteral("/zeros.png"),
                   bytes.first(40) + QByteArray(bytes.size() - 40, '\0'));
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png", u"walk/2.png"));
}

TEST_F(MorvoSpritesTest, aFewBytesBehindThePictureDoNoHarm) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 1);
  QFile whole(folder + QStringLiteral("/1.png"));
  ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
  PetFolder::write(folder + QStringLiteral("/2.png"), whole.readAll() + "\n");
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png", u"walk/2.png"));
  EXPECT_FALSE(FrameFile::decode(folder + QStringLiteral("/2.png")).isNull());
}

TEST_F(MorvoSpritesTest, picturesOfOtherFormatsAreSkipped) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 1);
  const QImage image = PetFolder::picture({8, 8}, QRect(0, 0, 8, 8));
  ASSERT_TRUE(image.save(folder + QStringLiteral("/2.png"), "BMP"));
  ASSERT_TRUE(image.save(folder + QStringLiteral("/3.png"), "PPM"));
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png"));
  EXPECT_TRUE(FrameFile::decode(folder + QStringLiteral("/2.png")).isNull());
}

TEST_F(MorvoSpritesTest, picturesTooLargeToBeDecodedAreSkipped) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 1);
  QImage flat(8192, 4100, QImage::Format_Mono);
  flat.fill(1);
  PetFolder::save(flat, folder + QStringLiteral("/2.png"));
  QImage deep(5792, 2900, QImage::Format_RGBA64);
  deep.fill(Qt::red);
  PetFolder::save(deep, folder + QStringLiteral("/3.png"));
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png"));
}

TEST_F(MorvoSpritesTest, absurdSizesAreSkipped) {
  const QString folder = m_folder.stateFolder(pet, walk);
  QImage wide(8193, 1, QImage::Format_Mono);
  wide.fill(1);
  PetFolder::save(wide, folder + QStringLiteral("/1.png"));
  QImage widest(8192, 1, QImage::Format_Mono);
  widest.fill(1);
  PetFolder::save(widest, folder + QStringLiteral("/2.png"));
  EXPECT_THAT(names(walk), ElementsAre(u"walk/2.png"));
}

TEST_F(MorvoSpritesTest, aFolderOfFiveThousandFilesIsOrderedAndCounted) {
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 1);
  QFile picture(folder + QStringLiteral("/1.png"));
  ASSERT_TRUE(picture.open(QIODevice::ReadOnly));
  const QByteArray bytes = picture.readAll();
  for (int index = 2; index <= 5000; ++index) {
    PetFolder::write(folder + u'/' + QString::number(index) + QStringLiteral(".png"), bytes);
  }
  ASSERT_THAT(m_sprites.frames(walk), SizeIs(5000));
  EXPECT_TRUE(m_sprites.frames(walk).at(999).path.endsWith(u"/1000.png"));
}

TEST_F(MorvoSpritesTest, namesThatLeadElsewhereHaveNoFrames) {
  PetFolder::fill(m_folder.stateFolder(QStringLiteral("other"), idle), 2);
  PetFolder::fill(m_folder.stateFolder(pet, walk), 2);
  for (const auto *state :
       {u"../other/idle", u"..", u".", u"", u"walk/../walk", u"/etc", u".walk"}) {
    EXPECT_THAT(m_sprites.frames(QString::fromUtf16(state)), IsEmpty());
    EXPECT_FALSE(m_sprites.hasFrame(QString::fromUtf16(state)));
  }
  m_sprites.setPersona(QStringLiteral("../pets/other"));
  EXPECT_THAT(m_sprites.frames(idle), IsEmpty());
  EXPECT_FALSE(m_sprites.isDiskBakedPersona());
}

TEST_F(MorvoSpritesTest, linksThatLeadElsewhereAreRefused) {
  const QString outside = m_folder.stateFolder(QStringLiteral("other"), idle);
  PetFolder::fill(outside, 2);
  const QString folder = m_folder.stateFolder(pet, walk);
  PetFolder::fill(folder, 1);
  ASSERT_TRUE(
      QFile::link(outside, m_folder.files().userDirectory(pet) + QStringLiteral("/linked")));
  ASSERT_TRUE(QFile::link(outside + QStringLiteral("/1.png"), folder + QStringLiteral("/2.png")));
  ASSERT_TRUE(QFile::link(folder + QStringLiteral("/1.png"), folder + QStringLiteral("/3.png")));
  EXPECT_THAT(m_sprites.availableStateNames(), ElementsAre(u"walk"));
  EXPECT_THAT(m_sprites.frames(QStringLiteral("linked")), IsEmpty());
  EXPECT_THAT(names(walk), ElementsAre(u"walk/1.png", u"walk/3.png"));
}

TEST_F(MorvoSpritesTest, rawFramesLoseTheirSharedMargin) {
  const QString folder = m_folder.builtInFolder(pet, idle);
  PetFolder::save(PetFolder::picture({100, 100}, QRect(30, 50, 20, 20)),
                  folder + QStringLiteral("/1.png"));
  PetFolder::save(PetFolder::picture({100, 100}, QRect(50, 50, 20, 20)),
                  folder + QStringLiteral("/2.png"));
  // The content spans 0.4 by 0.2 around (0.5, 0.6); the square around it has a side of 0.56.
  const QRectF rect = m_sprites.contentRect();
  EXPECT_NEAR(rect.x(), 0.22, 1e-9);
  EXPECT_NEAR(rect.y(), 1 - (0.32 + 0.56), 1e-9);
  EXPECT_NEAR(rect.width(), 0.56, 1e-9);
  EXPECT_NEAR(rect.height(), 0.56, 1e-9);
  const SpriteFrame &frame = m_sprites.frames(idle).front();
  EXPECT_NEAR(frame.crop.y(), 0.32, 1e-9);
  EXPECT_NEAR(frame.size.width(), 56, 1e-9);
}

TEST_F(MorvoSpritesTest, aContentAtTheBorderKeepsTheSquareInside) {
  PetFolder::save(PetFolder::picture({100, 100}, QRect(0, 0, 20, 20)),
                  m_folder.builtInFolder(pet, idle) + QStringLiteral("/1.png"));
  const QRectF rect = m_sprites.contentRect();
  EXPECT_NEAR(rect.x(), 0, 1e-9);
  EXPECT_NEAR(rect.bottom(), 1, 1e-9);
  EXPECT_NEAR(rect.width(), 0.36, 1e-9);
}

TEST_F(MorvoSpritesTest, aContentOfOnePixelIsNone) {
  PetFolder::save(PetFolder::picture({100, 100}, QRect(50, 10, 1, 80)),
                  m_folder.builtInFolder(pet, idle) + QStringLiteral("/1.png"));
  EXPECT_EQ(m_sprites.contentRect(), QRectF(0, 0, 1, 1));
}

TEST_F(MorvoSpritesTest, aPetWithoutAnyFrameShowsItsWholeNothing) {
  EXPECT_EQ(m_sprites.contentRect(), QRectF(0, 0, 1, 1));
  EXPECT_FALSE(m_sprites.anyAvailableState());
  EXPECT_FALSE(MorvoSprites::diskPNGs(m_folder.path(QStringLiteral("nowhere"))));
}

TEST_F(MorvoSpritesTest, aBuiltInPetBringsItsContentSquare) {
  PetFolder::fill(m_folder.builtInFolder(pet, idle), 2);
  const QRectF square(0.25, 0.125, 0.5, 0.5);
  ASSERT_TRUE(ContentFile::write(m_folder.files().resourceDirectory(pet), square));
  EXPECT_EQ(m_sprites.contentRect(), square);
  EXPECT_EQ(m_sprites.measuredContentRect(), QRectF(0, 0, 1, 1));
}

TEST_F(MorvoSpritesTest, theUsersFramesAreMeasuredWhateverTheBuiltInPetBrings) {
  PetFolder::fill(m_folder.stateFolder(pet, idle), 2);
  PetFolder::fill(m_folder.builtInFolder(pet, idle), 1);
  ASSERT_TRUE(
      ContentFile::write(m_folder.files().resourceDirectory(pet), QRectF(0.25, 0.125, 0.5, 0.5)));
  EXPECT_EQ(m_sprites.contentRect(), QRectF(0, 0, 1, 1));
}

TEST_F(MorvoSpritesTest, aContentFileThatHoldsNoSquareIsMeasuredOver) {
  PetFolder::fill(m_folder.builtInFolder(pet, idle), 2);
  for (const char *text : {"", "[]", "{}", "{\"x\":0,\"y\":0,\"width\":0,\"height\":1}",
                           "{\"x\":0.5,\"y\":0,\"width\":0.6,\"height\":1}",
                           "{\"x\":-0.1,\"y\":0,\"width\":0.5,\"height\":0.5}"}) {
    PetFolder::write(m_folder.files().resourceDirectory(pet) + QStringLiteral("/content.json"),
                     text);
    m_sprites.setPersona(pet);
    EXPECT_EQ(m_sprites.contentRect(), QRectF(0, 0, 1, 1)) << text;
  }
}

} // namespace
} // namespace morvo
