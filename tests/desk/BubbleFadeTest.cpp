#include "pet/BubbleFade.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

class BubbleFadeTest : public testing::Test {
protected:
  static constexpr QRect area{0, 0, 312, 130};
  static constexpr Instant start{std::chrono::hours(1)};

  [[nodiscard]] static SpeechBubble bubble(const QString &text) {
    return {text, BubbleLook{Qt::white, Qt::white, Qt::white, 1}, area.size()};
  }
  /// Alpha in the bubble's ground near its left edge.
  [[nodiscard]] int alpha(Instant now) {
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    m_fade.paint(painter, area, now, 1);
    painter.end();
    return qAlpha(image.pixel(m_ground));
  }

  BubbleFade m_fade;
  QPoint m_ground = bubble(QStringLiteral("你好呀")).placeIn(area).topLeft() + QPoint(6, 16);
};

TEST_F(BubbleFadeTest, NewWordsFadeInOverAFifthOfASecond) {
  m_fade.change(bubble(QStringLiteral("你好呀")), start);
  EXPECT_TRUE(m_fade.isRunning());
  EXPECT_EQ(alpha(start), 0);
  const int quarter = alpha(start + seconds(0.05));
  const int middle = alpha(start + seconds(0.1));
  EXPECT_GT(quarter, 0);
  EXPECT_LT(quarter, middle / 2) << "it begins slowly";
  EXPECT_NEAR(middle, 0.46 * 255, 3);
  EXPECT_NEAR(alpha(start + seconds(0.2)), 0.92 * 255, 2);
}

TEST_F(BubbleFadeTest, WordsTakenAwayFadeOut) {
  m_fade.replace(bubble(QStringLiteral("你好呀")));
  m_fade.change({}, start);
  EXPECT_NEAR(alpha(start), 0.92 * 255, 2);
  EXPECT_NEAR(alpha(start + seconds(0.1)), 0.46 * 255, 3);
  EXPECT_EQ(alpha(start + seconds(0.2)), 0);
}

TEST_F(BubbleFadeTest, EndsOnlyWhenItsLastPictureWasDue) {
  m_fade.change(bubble(QStringLiteral("你好呀")), start);
  m_fade.settle(start + seconds(0.19));
  EXPECT_TRUE(m_fade.isRunning());
  m_fade.settle(start + seconds(0.2));
  EXPECT_FALSE(m_fade.isRunning());
}

TEST_F(BubbleFadeTest, AnotherLookIsShownAtOnce) {
  m_fade.replace(bubble(QStringLiteral("你好呀")));
  EXPECT_FALSE(m_fade.isRunning());
  EXPECT_NEAR(alpha(start), 0.92 * 255, 2);
}

} // namespace
} // namespace morvo
