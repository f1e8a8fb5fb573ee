#include "panels/PanelTexts.h"

#include <gtest/gtest.h>

#include <utility>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

class MoodLabel : public testing::TestWithParam<std::pair<const char16_t *, const char16_t *>> {};

TEST_P(MoodLabel, SaysTheMoodInWords) {
  const auto [mood, label] = GetParam();
  EXPECT_EQ(PanelTexts::moodLabel(QString::fromUtf16(mood)), QString::fromUtf16(label));
}

INSTANTIATE_TEST_SUITE_P(
    PanelTextsTest, MoodLabel,
    testing::Values(std::pair{u"happy", u"心情不错"}, std::pair{u"hype", u"兴高采烈"},
                    std::pair{u"hungry", u"有点饿（额度紧）"}, std::pair{u"sleepy", u"困了"},
                    std::pair{u"dreamy", u"困了"}, std::pair{u"lonely", u"想你理理它"},
                    std::pair{u"calm", u"平静"}, std::pair{u"curious", u"curious"},
                    std::pair{u"…", u"…"}, std::pair{u"", u""}));

class MoodAccent : public testing::TestWithParam<std::pair<const char16_t *, Tone>> {};

TEST_P(MoodAccent, HasItsColour) {
  const auto [mood, tone] = GetParam();
  EXPECT_EQ(PanelTexts::accent(QString::fromUtf16(mood)), (PanelTint{tone, 1}));
}

INSTANTIATE_TEST_SUITE_P(
    PanelTextsTest, MoodAccent,
    testing::Values(std::pair{u"hungry", Tone::krill}, std::pair{u"lonely", Tone::body},
                    std::pair{u"sleepy", Tone::body}, std::pair{u"dreamy", Tone::body},
                    std::pair{u"mischievous", Tone::coral}, std::pair{u"happy", Tone::theme},
                    std::pair{u"calm", Tone::theme}, std::pair{u"unheard of", Tone::theme}));

class HealthText : public testing::TestWithParam<std::tuple<ChatHealth, const char16_t *, bool>> {};

TEST_P(HealthText, IsTheTablesAndIsShownForTroubleOnly) {
  const auto [health, text, isShown] = GetParam();
  EXPECT_EQ(PanelTexts::chatHealth(health), QString::fromUtf16(text));
  EXPECT_EQ(PanelTexts::showsChatHealth(health), isShown);
}

INSTANTIATE_TEST_SUITE_P(
    PanelTextsTest, HealthText,
    testing::Values(std::tuple{ChatHealth::checking, u"对话连接检查中", false},
                    std::tuple{ChatHealth::ready, u"对话就绪", false},
                    std::tuple{ChatHealth::sending, u"发送中", false},
                    std::tuple{ChatHealth::serverOffline, u"云端服务未连接", true},
                    std::tuple{ChatHealth::sessionIssue, u"会话需重试", true},
                    std::tuple{ChatHealth::rateLimited, u"发送太频繁", true},
                    std::tuple{ChatHealth::quotaExceeded, u"今日对话额度已用完", true},
                    std::tuple{ChatHealth::modelUnavailable, u"上游模型不可用", true}));

TEST(PanelTextsTest, TokensAreShortened) {
  EXPECT_EQ(PanelTexts::fmtTokens(0), QStringLiteral("0"));
  EXPECT_EQ(PanelTexts::fmtTokens(999), QStringLiteral("999"));
  EXPECT_EQ(PanelTexts::fmtTokens(1000), QStringLiteral("1K"));
  EXPECT_EQ(PanelTexts::fmtTokens(12600), QStringLiteral("13K"));
  EXPECT_EQ(PanelTexts::fmtTokens(999999), QStringLiteral("1000K"));
  EXPECT_EQ(PanelTexts::fmtTokens(1000000), QStringLiteral("1.0M"));
  EXPECT_EQ(PanelTexts::fmtTokens(12345678), QStringLiteral("12.3M"));
  EXPECT_EQ(PanelTexts::fmtTokens(-5), QStringLiteral("-5"));
}

} // namespace
} // namespace morvo
