#include "app/UsageModes.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(UsageModesTest, EachAgentHasALineAndAllTogetherOne) {
  const UsageSnapshot snapshot{
      .agents = {{.id = u"claude"_s,
                  .name = u"Claude Code"_s,
                  .windowTokens = 1234567,
                  .weekTokens = 7654321,
                  .cost = 12.345},
                 {.id = u"codex"_s, .name = u"Codex"_s, .windowTokens = 0, .weekTokens = 9}},
      .events = {},
      .weekTokens = 7654330};
  const UsageStats stats{.windowTokens = 1234567,
                         .costUSD = 0.125,
                         .burnPerMin = 20.5,
                         .ceiling = 2469134,
                         .usedPct = 50,
                         .level = UsageLevel::normal};
  EXPECT_EQ(UsageModes::scanLines(snapshot, stats),
            (QStringList{u"SCAN  Claude Code  1234567tok  7d=7654321  $12.35"_s,
                         u"SCAN  Codex  0tok  7d=9  $0.00"_s,
                         u"STATS window=1234567 used=50%(ceiling2469134) level=normal "
                         "20tok/min $0.12"_s}));
}

TEST(UsageModesTest, WithoutAgentsOnlyTheTotalsAreTold) {
  EXPECT_EQ(UsageModes::scanLines({}, {}),
            QStringList{u"STATS window=0 used=0%(ceiling0) level=normal 0tok/min $0.00"_s});
}

TEST(UsageModesTest, FiguresOfAnySizeAreWritten) {
  const UsageStats stats{.costUSD = 1e308, .burnPerMin = -1e308, .level = UsageLevel::critical};
  const QString line = UsageModes::scanLines({}, stats).front();
  EXPECT_GT(line.size(), 600);
  EXPECT_TRUE(line.contains(u"level=critical"_s));
}

TEST(UsageModesTest, CodexTellsItsWindowAndItsPlan) {
  EXPECT_EQ(UsageModes::codexLine(LiveRateLimit{.primaryPct = 42, .plan = u"pro"_s}),
            u"5h=42% plan=pro"_s);
  EXPECT_EQ(UsageModes::codexLine(LiveRateLimit{.primaryPct = 12.5}), u"5h=12.5% plan="_s);
  EXPECT_EQ(UsageModes::codexLine(std::nullopt), u"没读到 rate_limits"_s);
}

} // namespace
} // namespace morvo
