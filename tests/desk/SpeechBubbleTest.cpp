#include "pet/SpeechBubble.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>

namespace morvo {
namespace {

constexpr QSize room(312, 130);
const BubbleLook look{Qt::black, Qt::white, Qt::cyan, 1.0};

QImage painted(SpeechBubble &bubble, double opacity = 1, double ratio = 1) {
  QImage image(QSize(room * ratio), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  bubble.paint(painter, QRect(QPoint(), room), opacity, ratio);
  return image;
}

TEST(SpeechBubbleTest, NoWordsAreNoBubble) {
  for (const QString &text : {QString(), QStringLiteral(" \n\t ")}) {
    SpeechBubble bubble(text, look, room);
    EXPECT_TRUE(bubble.isEmpty());
    QImage nothing(room, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    EXPECT_EQ(painted(bubble), nothing);
  }
}

TEST(SpeechBubbleTest, AShortLineIsAsWideAsItsWords) {
  const SpeechBubble bubble(QStringLiteral("好呀"), look, room);
  EXPECT_EQ(bubble.lines().size(), 1);
  EXPECT_GT(bubble.size().width(), 2 * 11);
  EXPECT_LT(bubble.size().width(), 70);
}

TEST(SpeechBubbleTest, IsNeverWiderThanItsLimitNorThanItsRoom) {
  const QString text = QString(60, QChar(u'海'));
  EXPECT_LE(SpeechBubble(text, look, room).size().width(), 230);
  EXPECT_LE(SpeechBubble(text, look, {192, 130}).size().width(), 192 - 2 * 5);
}

TEST(SpeechBubbleTest, WrapsAtWordsAndKeepsThemAll) {
  const QString text =
      QStringLiteral("The quick build has finished and every single test is green again");
  const SpeechBubble bubble(text, look, room);
  EXPECT_GT(bubble.lines().size(), 1);
  QString joined;
  for (const QString &line : bubble.lines()) {
    joined += line.endsWith(u' ') ? line : line + u' ';
  }
  EXPECT_EQ(joined.trimmed(), text);
}

TEST(SpeechBubbleTest, BreaksAWordLongerThanALine) {
  const SpeechBubble bubble(QString(80, u'w'), look, room);
  EXPECT_GT(bubble.lines().size(), 1);
  EXPECT_EQ(bubble.lines().join(QString()), QString(80, u'w'));
}

TEST(SpeechBubbleTest, KeepsLineBreaksOfTheText) {
  EXPECT_EQ(SpeechBubble(QStringLiteral("一\n\n二"), look, room).lines(),
            QStringList({QStringLiteral("一"), QString(), QStringLiteral("二")}));
}

struct LongText {
  const char *name;
  QString text;
};

class LongTextTest : public testing::TestWithParam<LongText> {};

TEST_P(LongTextTest, EndsInAnEllipsisWithinTheRoomAtEveryTextSize) {
  for (const double scale : {0.85, 1.0, 1.4, 4.0}) {
    BubbleLook scaled = look;
    scaled.fontScale = scale;
    SpeechBubble bubble(GetParam().text, scaled, room);
    EXPECT_TRUE(bubble.lines().last().endsWith(u'…')) << scale;
    EXPECT_LE(bubble.size().height() + 2 * SpeechBubble::shadowReach, room.height()) << scale;
    const QRect place = bubble.placeIn(QRect(QPoint(), room));
    EXPECT_TRUE(QRect(QPoint(), room).contains(place)) << scale;
    EXPECT_FALSE(painted(bubble).isNull());
  }
}

INSTANTIATE_TEST_SUITE_P(Texts, LongTextTest,
                         testing::Values(LongText{"chinese", QString(400, QChar(u'深'))},
                                         LongText{"words", QStringLiteral("bubble ").repeated(200)},
                                         LongText{"oneWord", QString(3000, u'x')},
                                         LongText{"lineBreaks", QStringLiteral("a\n").repeated(50)},
                                         LongText{"emoji",
                                                  QStringLiteral("👩‍💻🎉").repeated(200)},
                                         LongText{"megabyte", QString(1 << 20, u'm')}),
                         [](const auto &instance) { return instance.param.name; });

TEST(SpeechBubbleTest, StandsAtTheBottomInTheMiddleOfItsArea) {
  const SpeechBubble bubble(QStringLiteral("你好"), look, room);
  const QRect place = bubble.placeIn(QRect(10, 20, 312, 130));
  EXPECT_EQ(place.size(), bubble.size());
  EXPECT_NEAR(place.center().x(), 10 + 156, 1);
  EXPECT_EQ(place.y() + place.height(), 20 + 130 - SpeechBubble::shadowReach);
}

TEST(SpeechBubbleTest, ItsGroundIsNearlyOpaqueWithASoftShadowAround) {
  SpeechBubble bubble(QStringLiteral("你好"), look, room);
  const QRect place = bubble.placeIn(QRect(QPoint(), room));
  const QImage image = painted(bubble);
  EXPECT_NEAR(qAlpha(image.pixel(place.x() + 6, place.center().y())), 0.92 * 255, 2);
  const int shadow = qAlpha(image.pixel(place.center().x(), place.y() + place.height()));
  EXPECT_GT(shadow, 10);
  EXPECT_LT(shadow, 100);
  EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
}

TEST(SpeechBubbleTest, IsPaintedWithTheOpacityAsked) {
  SpeechBubble bubble(QStringLiteral("你好"), look, room);
  const QRect place = bubble.placeIn(QRect(QPoint(), room));
  const QPoint ground(place.x() + 6, place.center().y());
  EXPECT_NEAR(qAlpha(painted(bubble, 0.5).pixel(ground)), 0.46 * 255, 3);
  EXPECT_EQ(qAlpha(painted(bubble, 0).pixel(ground)), 0);
}

TEST(SpeechBubbleTest, IsSharpOnADenseScreen) {
  SpeechBubble bubble(QStringLiteral("你好，今天想聊点什么？"), look, room);
  const QImage single = painted(bubble, 1, 1);
  const QImage dense = painted(bubble, 1, 2);
  const QImage blown = single.scaled(dense.size());
  QImage plain = dense;
  plain.setDevicePixelRatio(1);
  EXPECT_NE(plain, blown);
  EXPECT_EQ(plain.size(), QSize(624, 260));
}

} // namespace
} // namespace morvo
