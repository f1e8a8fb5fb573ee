#include "pet/MorvoView.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo {
namespace {

const QColor tint(0x20, 0xc0, 0x40);
constexpr double frameTime = 1.0 / 60;
constexpr int minuteOfFrames = 60 * 60;

QImage painted(double time) {
  QImage image(260, 240, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  MorvoView::paint(painter, image.rect(), tint, time);
  return image;
}

TEST(MorvoViewTest, TheSameMomentAlwaysLooksTheSame) {
  EXPECT_EQ(painted(12.345), painted(12.345));
  EXPECT_NE(painted(12.345), painted(12.845));
}

TEST(MorvoViewTest, StartsAtRestWithOpenEyes) {
  const auto pose = MorvoView::poseAt(0);
  EXPECT_DOUBLE_EQ(pose.bob, 0);
  EXPECT_DOUBLE_EQ(pose.breath, 1);
  EXPECT_DOUBLE_EQ(pose.wag, 0);
  EXPECT_DOUBLE_EQ(pose.eyesOpen, 1);
}

TEST(MorvoViewTest, BlinksForAShortPartOfAMinute) {
  int shut = 0;
  for (int frame = 0; frame < minuteOfFrames; ++frame) {
    shut += MorvoView::poseAt(frame * frameTime).eyesOpen < 0.5 ? 1 : 0;
  }
  EXPECT_GT(shut, 30);
  EXPECT_LT(shut, minuteOfFrames / 20);
}

TEST(MorvoViewTest, NeverLeapsFromOneFrameToTheNext) {
  auto before = MorvoView::poseAt(0);
  for (int frame = 1; frame < minuteOfFrames; ++frame) {
    const auto now = MorvoView::poseAt(frame * frameTime);
    ASSERT_LT(std::abs(now.bob - before.bob), 0.5) << frame;
    ASSERT_LT(std::abs(now.wag - before.wag), 1) << frame;
    ASSERT_LT(std::abs(now.breath - before.breath), 0.01) << frame;
    ASSERT_LT(std::abs(now.eyesOpen - before.eyesOpen), 0.3) << frame;
    before = now;
  }
}

TEST(MorvoViewTest, SpoutsAboveItsHead) {
  // The middle jet, one quarter of a wave apart: high, then low.
  const double high = (std::numbers::pi / 2 - 1.6) / 3;
  const auto alpha = [](const QImage &image) { return qAlpha(image.pixel(130, 26)); };
  EXPECT_GT(alpha(painted(high + 2 * std::numbers::pi)), 200);
  EXPECT_LT(alpha(painted(high + std::numbers::pi)), 120);
}

TEST(MorvoViewTest, ThePictureIsTheBoxAndNothingIsCutAtItsBorder) {
  const QImage picture = MorvoView::picture(tint, 2);
  ASSERT_EQ(picture.size(), QSize(260, 240));
  int strongest = 0;
  for (int x = 0; x < 260; ++x) {
    strongest = std::max({strongest, qAlpha(picture.pixel(x, 0)), qAlpha(picture.pixel(x, 239))});
  }
  for (int y = 0; y < 240; ++y) {
    strongest = std::max({strongest, qAlpha(picture.pixel(0, y)), qAlpha(picture.pixel(259, y))});
  }
  EXPECT_LE(strongest, 2);
  EXPECT_EQ(qAlpha(picture.pixel(130, 120)), 255);
}

TEST(MorvoViewTest, ATimeBeforeTheStartIsAsGoodAsAnyOther) {
  const auto pose = MorvoView::poseAt(-3.21);
  EXPECT_GE(pose.eyesOpen, 0);
  EXPECT_LE(pose.eyesOpen, 1);
}

} // namespace
} // namespace morvo
