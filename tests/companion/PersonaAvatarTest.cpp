#include "companion/PersonaAvatar.h"

#include "companion/Personas.h"
#include "pet/MorvoView.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace morvo {
namespace {

const QColor accent(0x20, 0xc0, 0x40);

MorvoPersona custom(const QString &name, std::optional<QString> avatar = std::nullopt,
                    int tier = 2) {
  return {.id = QStringLiteral("custom-1"),
          .name = name,
          .tier = tier,
          .character = QString(),
          .avatarPath = std::move(avatar)};
}

QImage painted(const PersonaAvatar &avatar, const QString &mood = QStringLiteral("calm"),
               double time = 0, double fontScale = 1) {
  QImage image(PersonaAvatar::frame.toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  avatar.paint(painter, image.rect(), {mood, accent, fontScale}, time);
  return image;
}

class PersonaAvatarPictureTest : public testing::Test {
protected:
  [[nodiscard]] QString saved(QSize size) const {
    const QString path = m_folder.filePath(QStringLiteral("avatar.png"));
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(path));
    return path;
  }

  QTemporaryDir m_folder;
};

TEST_F(PersonaAvatarPictureTest, APictureThatLoadsComesFirst) {
  const PersonaAvatar avatar(custom(QStringLiteral("猫"), saved({64, 64}), 1));
  EXPECT_EQ(avatar.kind(), PersonaAvatar::Kind::picture);
  EXPECT_EQ(painted(avatar).pixelColor(65, 60), QColor(Qt::red));
}

TEST_F(PersonaAvatarPictureTest, IsFittedIntoOneHundredTwentyByOneHundredSixteen) {
  const QImage square = painted(PersonaAvatar(custom(QStringLiteral("猫"), saved({64, 64}))));
  EXPECT_EQ(square.pixelColor(65, 3), QColor(Qt::red));
  EXPECT_NE(square.pixelColor(65, 1).red(), 255);
  EXPECT_EQ(square.pixelColor(8, 60), QColor(Qt::red));
  EXPECT_NE(square.pixelColor(5, 60), QColor(Qt::red));
  const QImage wide = painted(PersonaAvatar(custom(QStringLiteral("猫"), saved({200, 50}))));
  EXPECT_EQ(wide.pixelColor(6, 60), QColor(Qt::red));
  EXPECT_NE(wide.pixelColor(65, 40), QColor(Qt::red));
}

TEST_F(PersonaAvatarPictureTest, AHugePictureIsFittedToo) {
  const QImage image = painted(PersonaAvatar(custom(QStringLiteral("猫"), saved({3000, 3000}))));
  EXPECT_EQ(image.pixelColor(65, 60), QColor(Qt::red));
  EXPECT_NE(image.pixelColor(1, 60), QColor(Qt::red));
}

TEST_F(PersonaAvatarPictureTest, AFileThatIsNoPictureCountsAsNone) {
  const QString path = m_folder.filePath(QStringLiteral("avatar.png"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("not a picture");
  file.close();
  EXPECT_EQ(PersonaAvatar(custom(QStringLiteral("猫"), path)).kind(), PersonaAvatar::Kind::emblem);
}

TEST_F(PersonaAvatarPictureTest, APipeIsNeverWaitedFor) {
  const QString path = m_folder.filePath(QStringLiteral("avatar.png"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
  EXPECT_EQ(PersonaAvatar(custom(QStringLiteral("猫"), path)).kind(), PersonaAvatar::Kind::emblem);
}

TEST(PersonaAvatarTest, AMissingOrEmptyPathCountsAsNone) {
  for (const char16_t *path : {u"", u"/no/such/picture.png"}) {
    const PersonaAvatar avatar(custom(QStringLiteral("猫"), QString::fromUtf16(path)));
    EXPECT_EQ(avatar.kind(), PersonaAvatar::Kind::emblem);
  }
}

TEST(PersonaAvatarTest, TheDefaultPersonaIsTheDrawingAndAnyOtherTierAnEmblem) {
  EXPECT_EQ(PersonaAvatar(Personas::morvo()).kind(), PersonaAvatar::Kind::drawing);
  EXPECT_EQ(PersonaAvatar(Personas::anime()).kind(), PersonaAvatar::Kind::emblem);
  EXPECT_EQ(PersonaAvatar(custom(QStringLiteral("猫"))).kind(), PersonaAvatar::Kind::emblem);
}

TEST(PersonaAvatarTest, TheEmblemIsACircleOfSideNinetyTwo) {
  const QImage image = painted(PersonaAvatar(custom(QString())));
  EXPECT_EQ(image.pixelColor(65 - 45, 60).alpha(), 255);
  EXPECT_LT(image.pixelColor(65 - 48, 60).alpha(), 128);
  EXPECT_EQ(image.pixelColor(65, 60 - 45).alpha(), 255);
  EXPECT_LT(image.pixelColor(65, 60 - 48).alpha(), 128);
}

TEST(PersonaAvatarTest, TheSignGrowsWithTheFontScale) {
  const PersonaAvatar avatar(custom(QStringLiteral("一")));
  const auto inked = [&](double fontScale) {
    const QImage empty = painted(PersonaAvatar(custom(QString())));
    const QImage image = painted(avatar, QStringLiteral("calm"), 0, fontScale);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        count += image.pixel(x, y) != empty.pixel(x, y) ? 1 : 0;
      }
    }
    return count;
  };
  EXPECT_GT(inked(1), 0);
  EXPECT_GT(inked(1.4), inked(0.85));
}

struct SignRow {
  const char16_t *name;
  const char16_t *sign;
};

class SignTest : public testing::TestWithParam<SignRow> {};

TEST_P(SignTest, IsTheFirstLetterOrEmojiOfTheName) {
  EXPECT_EQ(PersonaAvatar(custom(QString::fromUtf16(GetParam().name))).sign(),
            QString::fromUtf16(GetParam().sign));
}

INSTANTIATE_TEST_SUITE_P(Names, SignTest,
                         testing::Values(SignRow{u"星野", u"星"}, SignRow{u" Max", u"M"},
                                         SignRow{u"🦊狐狸", u"🦊"},
                                         SignRow{u"👩‍💻x", u"👩‍💻"},
                                         SignRow{u"é́a", u"é́"}, SignRow{u"", u""},
                                         SignRow{u"  \n", u""}));

struct SpeedRow {
  const char16_t *mood;
  double speed;
};

class SpeedTest : public testing::TestWithParam<SpeedRow> {};

TEST_P(SpeedTest, IsThatOfTheMood) {
  EXPECT_DOUBLE_EQ(PersonaAvatar::motion(QString::fromUtf16(GetParam().mood)).speed,
                   GetParam().speed);
}

INSTANTIATE_TEST_SUITE_P(Moods, SpeedTest,
                         testing::Values(SpeedRow{u"hype", 2.3}, SpeedRow{u"sleepy", 0.7},
                                         SpeedRow{u"dreamy", 0.7}, SpeedRow{u"calm", 1.2},
                                         SpeedRow{u"hungry", 1.2}, SpeedRow{u"no such", 1.2},
                                         SpeedRow{u"", 1.2}));

TEST(PersonaAvatarTest, EveryKindMovesWithTime) {
  for (const auto &persona : Personas::presets()) {
    const PersonaAvatar avatar(persona);
    EXPECT_EQ(painted(avatar, QStringLiteral("calm"), 1),
              painted(avatar, QStringLiteral("calm"), 1));
    EXPECT_NE(painted(avatar, QStringLiteral("calm"), 0),
              painted(avatar, QStringLiteral("calm"), 1));
  }
}

} // namespace
} // namespace morvo
