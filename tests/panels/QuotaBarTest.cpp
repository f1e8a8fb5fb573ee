#include "panels/QuotaBar.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

QuotaBar talk(const Quota &quota) { return QuotaBars::of(quota)[0]; }
QuotaBar pets(const Quota &quota) { return QuotaBars::of(quota)[1]; }

TEST(QuotaBarTest, TalkingIsInTheThemesColourAndPetsInTheBodys) {
  const Quota quota{.conversationsRemaining = 7,
                    .conversationLimit = 10,
                    .petGensRemaining = 1,
                    .petGenLimit = 2};
  EXPECT_EQ(talk(quota).title, QStringLiteral("对话"));
  EXPECT_EQ(talk(quota).value, QStringLiteral("3/10"));
  EXPECT_DOUBLE_EQ(talk(quota).progress, 0.3);
  EXPECT_EQ(talk(quota).fill, (PanelTint{Tone::theme, 0.75}));
  EXPECT_EQ(talk(quota).valueTint, (PanelTint{Tone::foam, 0.55}));
  EXPECT_EQ(pets(quota).title, QStringLiteral("造宠"));
  EXPECT_EQ(pets(quota).value, QStringLiteral("1/2"));
  EXPECT_EQ(pets(quota).fill, (PanelTint{Tone::body, 0.75}));
}

TEST(QuotaBarTest, ALimitOfNothingOrNoneShowsADash) {
  EXPECT_EQ(talk({.conversationLimit = 0}).value, QStringLiteral("—"));
  EXPECT_EQ(talk({.conversationsRemaining = 1600}).value, QStringLiteral("—"));
  EXPECT_DOUBLE_EQ(talk({.conversationLimit = 0}).progress, 0);
}

TEST(QuotaBarTest, AMillionIsUnlimitedWhateverTheUse) {
  const QuotaBar bar = talk(
      {.conversationsRemaining = 0, .conversationsUsed = 2000000, .conversationLimit = 1000000});
  EXPECT_EQ(bar.value, QStringLiteral("无限"));
  EXPECT_TRUE(bar.isUnlimited);
  EXPECT_EQ(bar.fill, (PanelTint{Tone::theme, 0.75}));
  EXPECT_EQ(bar.valueTint, (PanelTint{Tone::foam, 0.55}));
  EXPECT_DOUBLE_EQ(bar.fillWidth(200), 200);
  EXPECT_FALSE(talk({.conversationLimit = 999999}).isUnlimited);
}

TEST(QuotaBarTest, ASpentQuotaIsCoral) {
  const QuotaBar bar = talk({.conversationsRemaining = 0, .conversationLimit = 10});
  EXPECT_EQ(bar.value, QStringLiteral("10/10"));
  EXPECT_EQ(bar.fill, (PanelTint{Tone::coral, 0.85}));
  EXPECT_EQ(bar.valueTint, (PanelTint{Tone::coral, 1}));
}

TEST(QuotaBarTest, MoreRemainingThanTheLimitCountsAsNothingUsed) {
  EXPECT_EQ(talk({.conversationsRemaining = 15, .conversationLimit = 10}).value,
            QStringLiteral("0/10"));
}

TEST(QuotaBarTest, WithoutARemainderNoPetIsUsed) {
  EXPECT_EQ(pets({.petGenLimit = 5}).value, QStringLiteral("0/5"));
  EXPECT_DOUBLE_EQ(pets({.petGenLimit = 5}).progress, 0);
}

TEST(QuotaBarTest, TheToldProgressComesBeforeTheOwn) {
  EXPECT_DOUBLE_EQ(
      talk({.conversationsRemaining = 10, .conversationsUsed = 5, .conversationLimit = 10})
          .progress,
      0.5);
}

TEST(QuotaBarTest, TheFillIsNeverShorterThanFourPointsNorLongerThanTheBar) {
  EXPECT_DOUBLE_EQ(QuotaBar{.progress = 0}.fillWidth(200), 4);
  EXPECT_DOUBLE_EQ(QuotaBar{.progress = 0.5}.fillWidth(200), 100);
  EXPECT_DOUBLE_EQ(QuotaBar{.progress = 3}.fillWidth(200), 200);
  EXPECT_DOUBLE_EQ(QuotaBar{.progress = 0}.fillWidth(2), 2);
}

TEST(QuotaBarTest, FiguresOfAnySizeAreTaken) {
  const QuotaBar bar = talk(
      {.conversationsRemaining = std::numeric_limits<int>::min(), .conversationLimit = 999999});
  EXPECT_EQ(bar.value, QStringLiteral("2147483647/999999"));
  EXPECT_EQ(bar.fill.tone, Tone::coral);
}

} // namespace
} // namespace morvo
