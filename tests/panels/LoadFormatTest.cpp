#include "panels/LoadFormat.h"

#include <gtest/gtest.h>

#include <array>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

constexpr std::array trusts{QuotaTrust::live, QuotaTrust::calibrated, QuotaTrust::metered,
                            QuotaTrust::missing};

TEST(LoadFormatTest, AnAgentWithNothingToShowDoesNotAppear) {
  EXPECT_TRUE(LoadFormat::active({SourceLoad{.id = QStringLiteral("cursor")}}).empty());
}

TEST(LoadFormatTest, AnyFigureMakesAnAgentAppear) {
  EXPECT_EQ(
      LoadFormat::active({SourceLoad{.usedPct = 0}, SourceLoad{.weekPct = 0},
                          SourceLoad{.windowTokens = 1}, SourceLoad{.weekTokens = 1}, SourceLoad{}})
          .size(),
      4U);
}

TEST(LoadFormatTest, SeventyIsOrangeAndEightyFiveRedWhateverTheTrust) {
  for (const QuotaTrust trust : trusts) {
    EXPECT_EQ(LoadFormat::barColor(70, trust), (PanelTint{Tone::orange, 1}));
    EXPECT_EQ(LoadFormat::barColor(84, trust), (PanelTint{Tone::orange, 1}));
    EXPECT_EQ(LoadFormat::barColor(85, trust), (PanelTint{Tone::red, 1}));
    EXPECT_EQ(LoadFormat::barColor(69, trust), LoadFormat::trustColor(trust));
    EXPECT_EQ(LoadFormat::barColor(std::nullopt, trust), (PanelTint{Tone::foam, 0.25}));
  }
}

TEST(LoadFormatTest, EachTrustHasItsColour) {
  EXPECT_EQ(LoadFormat::trustColor(QuotaTrust::live), (PanelTint{Tone::theme, 1}));
  EXPECT_EQ(LoadFormat::trustColor(QuotaTrust::calibrated), (PanelTint{Tone::orange, 1}));
  EXPECT_EQ(LoadFormat::trustColor(QuotaTrust::metered), (PanelTint{Tone::foam, 0.7}));
  EXPECT_EQ(LoadFormat::trustColor(QuotaTrust::missing), (PanelTint{Tone::foam, 0.45}));
}

TEST(LoadFormatTest, EachTrustHasItsWords) {
  EXPECT_EQ(LoadFormat::trustLabel(QuotaTrust::live), QStringLiteral("官方额度"));
  EXPECT_EQ(LoadFormat::trustLabel(QuotaTrust::calibrated), QStringLiteral("估算"));
  EXPECT_EQ(LoadFormat::trustLabel(QuotaTrust::metered), QStringLiteral("本机累计"));
  EXPECT_EQ(LoadFormat::trustLabel(QuotaTrust::missing), QStringLiteral("暂无数据"));
  EXPECT_EQ(
      LoadFormat::trustCaption(QuotaTrust::live),
      QStringLiteral("来自该工具自己的额度接口/会话字段（如 Codex rate_limits、claude /usage）"));
  EXPECT_EQ(LoadFormat::trustCaption(QuotaTrust::calibrated),
            QStringLiteral("没有官方剩余额度时，用你本机历史用量估的负载，不是官方条"));
  EXPECT_EQ(LoadFormat::trustCaption(QuotaTrust::metered),
            QStringLiteral("只统计到本机日志里的 token 数，没有「还剩百分之几」"));
  EXPECT_EQ(LoadFormat::trustCaption(QuotaTrust::missing),
            QStringLiteral("本机没读到这家可展示的用量"));
}

TEST(LoadFormatTest, APercentageIsCalledAboutOnlyWhenItIsEstimated) {
  const QString title = QStringLiteral("5 小时");
  EXPECT_EQ(LoadFormat::bar(title, 42, 0, QuotaTrust::live).percent, QStringLiteral("42%"));
  EXPECT_EQ(LoadFormat::bar(title, 42, 0, QuotaTrust::calibrated).percent,
            QStringLiteral("约 42%"));
  EXPECT_EQ(LoadFormat::bar(title, 42, 0, QuotaTrust::metered).percent, QStringLiteral("42%"));
}

TEST(LoadFormatTest, WithoutAPercentageTheTokensDecideTheWord) {
  const LoadFormat::Bar none =
      LoadFormat::bar(QStringLiteral("一周"), std::nullopt, 0, QuotaTrust::metered);
  EXPECT_EQ(none.percent, QStringLiteral("暂无"));
  EXPECT_EQ(none.tokens, QStringLiteral("0"));
  EXPECT_EQ(none.percentTint, (PanelTint{Tone::foam, 0.4}));
  const LoadFormat::Bar some =
      LoadFormat::bar(QStringLiteral("一周"), std::nullopt, 1200, QuotaTrust::metered);
  EXPECT_EQ(some.percent, QStringLiteral("—"));
  EXPECT_EQ(some.tokens, QStringLiteral("1K token"));
}

TEST(LoadFormatTest, TheTwoBarsShowTheirOwnFigures) {
  const SourceLoad load{
      .usedPct = 10, .weekPct = 20, .trust = QuotaTrust::live, .windowTokens = 1, .weekTokens = 2};
  EXPECT_EQ(LoadFormat::window(load).title, QStringLiteral("5 小时"));
  EXPECT_EQ(LoadFormat::window(load).pct, 10);
  EXPECT_EQ(LoadFormat::window(load).tokens, QStringLiteral("1 token"));
  EXPECT_EQ(LoadFormat::week(load).title, QStringLiteral("一周"));
  EXPECT_EQ(LoadFormat::week(load).pct, 20);
  EXPECT_EQ(LoadFormat::week(load).tokens, QStringLiteral("2 token"));
}

} // namespace
} // namespace morvo
