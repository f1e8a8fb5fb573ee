#include "panels/Contrast.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

const QColor black(0, 0, 0);
const QColor white(255, 255, 255);

TEST(ContrastTest, RunsFromOneToTwentyOne) {
  EXPECT_NEAR(Contrast::ratio(black, white), 21, 1e-6);
  EXPECT_NEAR(Contrast::ratio(white, black), 21, 1e-6);
  EXPECT_NEAR(Contrast::ratio(white, white), 1, 1e-9);
  // The known limit case of grey on white.
  EXPECT_NEAR(Contrast::ratio(QColor(0x76, 0x76, 0x76), white), 4.54, 0.01);
}

TEST(ContrastTest, ATranslucentColourIsSeenMixedWithItsGround) {
  EXPECT_EQ(QColor(Contrast::over(QColor(255, 255, 255, 51), black).rgb()), QColor(51, 51, 51));
}

TEST(ContrastTest, AReadableTextStaysAsItIs) {
  const QColor text(255, 255, 255, 178);
  EXPECT_EQ(Contrast::readable(text, black, white).rgb(), Contrast::over(text, black).rgb());
}

TEST(ContrastTest, AFaintTextIsMadeStrongEnoughAndHardlyStronger) {
  const QColor text = Contrast::readable(QColor(255, 255, 255, 40), black, white);
  EXPECT_GE(Contrast::ratio(text, black), Contrast::leastForText);
  EXPECT_LT(Contrast::ratio(text, black), Contrast::leastForText + 0.6);
}

TEST(ContrastTest, AColourTooCloseToItsGroundLeansTowardsTheStrongOne) {
  const QColor amber(0xcc, 0x7f, 0x0d);
  ASSERT_LT(Contrast::ratio(amber, white), Contrast::leastForText);
  const QColor text = Contrast::readable(amber, white, black);
  EXPECT_GE(Contrast::ratio(text, white), Contrast::leastForText);
  EXPECT_NEAR(text.hueF(), amber.hueF(), 0.02);
}

TEST(ContrastTest, EveryGroundHasATextThatIsRead) {
  for (int red = 0; red < 256; red += 17) {
    for (int green = 0; green < 256; green += 17) {
      for (int blue = 0; blue < 256; blue += 17) {
        const QColor ground(red, green, blue);
        EXPECT_GE(Contrast::ratio(Contrast::textOn(ground), ground), 4.2);
      }
    }
  }
}

} // namespace
} // namespace morvo
