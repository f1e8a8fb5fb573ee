#include "monitor/AttentionEngine.h"

#include <QStringList>

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

namespace morvo {
namespace {

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

SourceLoad load(const char *id, std::optional<int> pct, QuotaTrust trust = QuotaTrust::live,
                std::int64_t tokens = 0) {
  return {.id = text(id),
          .name = text(id).toUpper(),
          .usedPct = pct,
          .weekPct = std::nullopt,
          .trust = trust,
          .windowTokens = tokens,
          .weekTokens = 0};
}

AttentionItem item(AttentionKind kind) {
  return {.id = text("id"),
          .kind = kind,
          .title = text("题"),
          .detail = text("细"),
          .agentName = std::nullopt};
}

QStringList ids(const std::vector<AttentionItem> &items) {
  QStringList list;
  for (const AttentionItem &entry : items) {
    list << entry.id;
  }
  return list;
}

TEST(AttentionKindTest, RawValuesStandInTheOrderOfImportance) {
  const std::vector kinds{AttentionKind::needsConfirm,  AttentionKind::agentDone,
                          AttentionKind::quotaPressure, AttentionKind::running,
                          AttentionKind::connectorGap,  AttentionKind::calm};
  QStringList names;
  for (const AttentionKind kind : kinds) {
    names << rawValue(kind);
  }
  EXPECT_EQ(names.join(u' '),
            text("needsConfirm agentDone quotaPressure running connectorGap calm"));
  EXPECT_TRUE(std::ranges::is_sorted(kinds));
}

TEST(QuotaTrustTest, RawValues) {
  EXPECT_EQ(rawValue(QuotaTrust::live), text("live"));
  EXPECT_EQ(rawValue(QuotaTrust::calibrated), text("calibrated"));
  EXPECT_EQ(rawValue(QuotaTrust::metered), text("metered"));
  EXPECT_EQ(rawValue(QuotaTrust::missing), text("missing"));
}

struct Line {
  std::optional<int> pct;
  QuotaTrust trust;
  std::int64_t tokens;
  const char *line;
};

class SourceLoadPrimaryLine : public testing::TestWithParam<Line> {};

TEST_P(SourceLoadPrimaryLine, SaysWhatIsKnown) {
  EXPECT_EQ(load("a", GetParam().pct, GetParam().trust, GetParam().tokens).primaryLine(),
            text(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(All, SourceLoadPrimaryLine,
                         testing::Values(Line{40, QuotaTrust::live, 1234, "5h 40% · 1.2K"},
                                         Line{40, QuotaTrust::calibrated, 1234, "5h·估 40% · 1.2K"},
                                         Line{40, QuotaTrust::metered, 0, "5h·估 40% · 0"},
                                         Line{0, QuotaTrust::missing, 0, "5h·估 0% · 0"},
                                         Line{std::nullopt, QuotaTrust::live, 1, "5h 1 token"},
                                         Line{std::nullopt, QuotaTrust::metered, 2000000,
                                              "5h 2.0M token"},
                                         Line{std::nullopt, QuotaTrust::live, 0, "官方额度"},
                                         Line{std::nullopt, QuotaTrust::calibrated, 0, "估算"},
                                         Line{std::nullopt, QuotaTrust::metered, 0, "本机累计"},
                                         Line{std::nullopt, QuotaTrust::missing, 0, "暂无数据"}));

INSTANTIATE_TEST_SUITE_P(ShortTokens, SourceLoadPrimaryLine,
                         testing::Values(Line{1, QuotaTrust::live, 999, "5h 1% · 999"},
                                         Line{1, QuotaTrust::live, 1000, "5h 1% · 1.0K"},
                                         Line{1, QuotaTrust::live, 1250, "5h 1% · 1.2K"},
                                         Line{1, QuotaTrust::live, 1350, "5h 1% · 1.4K"},
                                         Line{1, QuotaTrust::live, 1750, "5h 1% · 1.8K"},
                                         Line{1, QuotaTrust::live, 999999, "5h 1% · 1000.0K"},
                                         Line{1, QuotaTrust::live, 1000000, "5h 1% · 1.0M"},
                                         Line{1, QuotaTrust::live, 1250000, "5h 1% · 1.2M"},
                                         Line{1, QuotaTrust::live, 12345678900,
                                              "5h 1% · 12345.7M"}));

// Loads.

int notAsked(std::int64_t /*windowTokens*/) {
  ADD_FAILURE() << "an estimate was asked for";
  return 0;
}

DetectedAgent agent(std::int64_t windowTokens, std::int64_t weekTokens) {
  return {.id = text("claude"),
          .name = text("Claude Code"),
          .windowTokens = windowTokens,
          .weekTokens = weekTokens};
}

struct LiveRow {
  double primary;
  double weekly;
  int usedPct;
  int weekPct;
};

class SourceLoadLive : public testing::TestWithParam<LiveRow> {};

TEST_P(SourceLoadLive, TakesTheOfficialFiguresRoundedAndClamped) {
  const auto &[primary, weekly, usedPct, weekPct] = GetParam();
  DetectedAgent found = agent(1500, 9000);
  found.liveLimit = LiveRateLimit{.primaryPct = primary, .weeklyPct = weekly};
  EXPECT_EQ(AttentionEngine::sourceLoad(found, notAsked), (SourceLoad{.id = text("claude"),
                                                                      .name = text("Claude Code"),
                                                                      .usedPct = usedPct,
                                                                      .weekPct = weekPct,
                                                                      .trust = QuotaTrust::live,
                                                                      .windowTokens = 1500,
                                                                      .weekTokens = 9000}));
}

INSTANTIATE_TEST_SUITE_P(Rows, SourceLoadLive,
                         testing::Values(LiveRow{69.6, 0.4, 70, 0}, LiveRow{69.4, 0.5, 69, 1},
                                         LiveRow{-3, 100.6, 0, 100}, LiveRow{1e300, -1e300, 100, 0},
                                         LiveRow{std::numeric_limits<double>::infinity(),
                                                 std::numeric_limits<double>::quiet_NaN(), 100,
                                                 0}));

TEST(SourceLoadTest, WithoutOfficialFiguresTheWindowIsEstimatedByItsTokens) {
  std::vector<std::int64_t> asked;
  const auto learned = [&asked](std::int64_t tokens) {
    asked.push_back(tokens);
    return 42;
  };
  const auto load = AttentionEngine::sourceLoad(agent(1, 0), learned);
  EXPECT_EQ(asked, std::vector<std::int64_t>{1});
  EXPECT_EQ(load.trust, QuotaTrust::calibrated);
  EXPECT_EQ(load.usedPct, 42);
  EXPECT_EQ(load.weekPct, std::nullopt);
}

TEST(SourceLoadTest, AnEstimateIsClamped) {
  EXPECT_EQ(AttentionEngine::sourceLoad(agent(9, 0), [](auto) { return 250; }).usedPct, 100);
  EXPECT_EQ(AttentionEngine::sourceLoad(agent(9, 0), [](auto) { return -1; }).usedPct, 0);
}

TEST(SourceLoadTest, WithAWeekOnlyTheCountIsMeteredAndWithNothingMissing) {
  const auto metered = AttentionEngine::sourceLoad(agent(0, 1), notAsked);
  EXPECT_EQ(metered.trust, QuotaTrust::metered);
  EXPECT_EQ(metered.usedPct, std::nullopt);
  EXPECT_EQ(metered.weekPct, std::nullopt);
  EXPECT_EQ(metered.weekTokens, 1);
  EXPECT_EQ(AttentionEngine::sourceLoad(agent(0, 0), notAsked).trust, QuotaTrust::missing);
  EXPECT_EQ(AttentionEngine::sourceLoad(agent(-5, -5), notAsked).trust, QuotaTrust::missing);
}

TEST(SourceLoadTest, TheLoadsStandInTheOrderOfTheAgents) {
  DetectedAgent second = agent(0, 7);
  second.id = text("codex");
  const auto loads = AttentionEngine::sourceLoads({agent(0, 3), second}, notAsked);
  ASSERT_EQ(loads.size(), 2U);
  EXPECT_EQ(loads.front().id, text("claude"));
  EXPECT_EQ(loads.back().id, text("codex"));
  EXPECT_EQ(loads.back().weekTokens, 7);
}

TEST(AttentionEngineTest, APendingApprovalComesBeforeADoneEvent) {
  AttentionSnapshot snapshot;
  snapshot.recentDone = {.agent = text("claude"), .label = {}};
  snapshot.pendingConfirm = {.agent = text("权限"), .summary = text("Bash：rm -rf x")};
  const auto items = AttentionEngine::rank(snapshot);
  ASSERT_EQ(ids(items), (QStringList{text("confirm"), text("done-claude")}));
  EXPECT_EQ(AttentionEngine::headline(items), text("权限：Bash：rm -rf x"));
}

TEST(AttentionEngineTest, TheConfirmItemReads) {
  AttentionSnapshot snapshot;
  snapshot.pendingConfirm = {.agent = text("codex"), .summary = text("继续？")};
  EXPECT_EQ(AttentionEngine::rank(snapshot),
            (std::vector{AttentionItem{.id = text("confirm"),
                                       .kind = AttentionKind::needsConfirm,
                                       .title = text("等你确认"),
                                       .detail = text("codex：继续？"),
                                       .agentName = text("codex")}}));
}

TEST(AttentionEngineTest, ADetailIsAtMostAThousandCharactersLong) {
  AttentionSnapshot snapshot;
  snapshot.pendingConfirm = {.agent = text("a"), .summary = QString(998, u'x')};
  EXPECT_EQ(AttentionEngine::rank(snapshot).front().detail.size(), 1000);
  snapshot.pendingConfirm->summary = QString(10 << 20, u'x');
  snapshot.recentDone = {.agent = text("b"), .label = snapshot.pendingConfirm->summary};
  const auto items = AttentionEngine::rank(snapshot);
  EXPECT_EQ(items.front().detail, text("a：") + QString(998, u'x') + text("……"));
  EXPECT_EQ(AttentionEngine::headline(items), items.front().detail);
  EXPECT_EQ(items.back().detail, text("b · ") + QString(996, u'x') + text("……"));
}

TEST(AttentionEngineTest, ItemsStandByTheirKindAndThoseOfOneKindByTheirId) {
  const auto item = [](AttentionKind kind, const char *id) {
    return AttentionItem{.id = text(id), .kind = kind};
  };
  using Kind = AttentionKind;
  const std::vector ordered{item(Kind::needsConfirm, "z"),  item(Kind::agentDone, "y"),
                            item(Kind::quotaPressure, "a"), item(Kind::quotaPressure, "b"),
                            item(Kind::running, "0"),       item(Kind::connectorGap, "x"),
                            item(Kind::calm, "calm")};
  auto items = ordered;
  std::ranges::reverse(items);
  std::ranges::stable_sort(items, AttentionEngine::comesBefore);
  EXPECT_EQ(items, ordered);
  EXPECT_FALSE(AttentionEngine::comesBefore(items.front(), items.front()));
}

TEST(AttentionEngineTest, ADoneItemNamesItsLabel) {
  AttentionSnapshot snapshot;
  snapshot.recentDone = {.agent = text("claude"), .label = text("重构")};
  EXPECT_EQ(AttentionEngine::rank(snapshot),
            (std::vector{AttentionItem{.id = text("done-claude"),
                                       .kind = AttentionKind::agentDone,
                                       .title = text("刚完成"),
                                       .detail = text("claude · 重构"),
                                       .agentName = text("claude")}}));
}

TEST(AttentionEngineTest, ADoneWithAnEmptyLabelHasOnlyTheAgentAsDetail) {
  AttentionSnapshot snapshot;
  snapshot.recentDone = {.agent = text("claude"), .label = {}};
  EXPECT_EQ(AttentionEngine::rank(snapshot).front().detail, text("claude"));
}

TEST(AttentionEngineTest, ALoadCountsAsPressureFromSeventyOn) {
  AttentionSnapshot snapshot;
  snapshot.loads = {load("a", 69)};
  EXPECT_EQ(ids(AttentionEngine::rank(snapshot)), QStringList{text("calm")});
  snapshot.loads = {load("a", 70)};
  EXPECT_EQ(ids(AttentionEngine::rank(snapshot)), QStringList{text("quota-a")});
}

struct Pressure {
  QuotaTrust trust;
  const char *detail;
};

class AttentionEnginePressure : public testing::TestWithParam<Pressure> {};

TEST_P(AttentionEnginePressure, SaysHowFarToTrustTheFigure) {
  AttentionSnapshot snapshot;
  snapshot.loads = {load("a", 80, GetParam().trust, 1500)};
  EXPECT_EQ(AttentionEngine::rank(snapshot),
            (std::vector{AttentionItem{.id = text("quota-a"),
                                       .kind = AttentionKind::quotaPressure,
                                       .title = text("A 额度偏紧"),
                                       .detail = text(GetParam().detail),
                                       .agentName = text("A")}}));
}

INSTANTIATE_TEST_SUITE_P(All, AttentionEnginePressure,
                         testing::Values(Pressure{QuotaTrust::live, "5h 80% · 1.5K（真实额度）"},
                                         Pressure{QuotaTrust::calibrated,
                                                  "5h·估 80% · 1.5K（估算，非官方）"},
                                         Pressure{QuotaTrust::metered, "5h·估 80% · 1.5K"},
                                         Pressure{QuotaTrust::missing, "5h·估 80% · 1.5K"}));

TEST(AttentionEngineTest, LoadsUnderPressureStandInTheOrderOfTheirIds) {
  AttentionSnapshot snapshot;
  snapshot.loads = {load("b", 90), load("a", 75), load("c", 50), load("d", std::nullopt)};
  EXPECT_EQ(ids(AttentionEngine::rank(snapshot)), (QStringList{text("quota-a"), text("quota-b")}));
}

TEST(AttentionEngineTest, LoadsThatShareAnIdStandByTheirPercentage) {
  AttentionSnapshot snapshot;
  snapshot.loads = {load("a", 75), load("a", 90)};
  const auto items = AttentionEngine::rank(snapshot);
  ASSERT_EQ(items.size(), 2U);
  EXPECT_TRUE(items.front().detail.contains(text("90%")));
}

TEST(AttentionEngineTest, WithNothingGoingOnOnlyTheCalmItemIsThere) {
  const auto items = AttentionEngine::rank({});
  EXPECT_EQ(items, (std::vector{AttentionItem{.id = text("calm"),
                                              .kind = AttentionKind::calm,
                                              .title = text("都安静"),
                                              .detail = text("没有要你拍板的事"),
                                              .agentName = std::nullopt}}));
  EXPECT_EQ(AttentionEngine::headline(items), text("都安静 · 没有要你拍板的事"));
  EXPECT_EQ(AttentionEngine::explain(items.front(), AttentionEngine::tightest({})),
            text("一切平静。"));
}

TEST(AttentionEngineTest, RunningSessionsAndUnhookedAgentsMakeNoItems) {
  AttentionSnapshot snapshot;
  snapshot.runningCount = 3;
  snapshot.claudeDetected = true;
  snapshot.cursorDetected = true;
  EXPECT_EQ(ids(AttentionEngine::rank(snapshot)), QStringList{text("calm")});
}

struct Headline {
  AttentionKind kind;
  const char *headline;
};

class AttentionEngineHeadline : public testing::TestWithParam<Headline> {};

TEST_P(AttentionEngineHeadline, SpeaksOfTheFirstItem) {
  EXPECT_EQ(AttentionEngine::headline({item(GetParam().kind), item(AttentionKind::needsConfirm)}),
            text(GetParam().headline));
}

INSTANTIATE_TEST_SUITE_P(All, AttentionEngineHeadline,
                         testing::Values(Headline{AttentionKind::needsConfirm, "细"},
                                         Headline{AttentionKind::agentDone, "细 刚完成"},
                                         Headline{AttentionKind::quotaPressure, "题 · 细"},
                                         Headline{AttentionKind::running, "题"},
                                         Headline{AttentionKind::connectorGap, "题"},
                                         Headline{AttentionKind::calm,
                                                  "都安静 · 没有要你拍板的事"}));

TEST(AttentionEngineTest, TheHeadlineOfNoItemsIsCalm) {
  EXPECT_EQ(AttentionEngine::headline({}), text("都安静 · 没有要你拍板的事"));
}

TEST(AttentionEngineTest, TheTightestLoadHasTheHighestPercentageTheFirstOfEquals) {
  EXPECT_EQ(AttentionEngine::tightest({}), std::nullopt);
  EXPECT_EQ(AttentionEngine::tightest({load("a", std::nullopt)}), std::nullopt);
  const std::vector loads{load("a", std::nullopt), load("b", 5), load("c", 9), load("d", 9)};
  EXPECT_EQ(AttentionEngine::tightest(loads)->id, text("c"));
  EXPECT_EQ(AttentionEngine::tightest({load("a", std::nullopt), load("b", 0)})->id, text("b"));
}

struct Explanation {
  std::optional<AttentionKind> top;
  std::optional<SourceLoad> tightest;
  const char *sentence;
};

class AttentionEngineExplain : public testing::TestWithParam<Explanation> {};

TEST_P(AttentionEngineExplain, SaysOneSentence) {
  const auto &[top, tightest, sentence] = GetParam();
  EXPECT_EQ(AttentionEngine::explain(top ? std::optional(item(*top)) : std::nullopt, tightest),
            text(sentence));
}

INSTANTIATE_TEST_SUITE_P(
    All, AttentionEngineExplain,
    testing::Values(
        Explanation{AttentionKind::needsConfirm, load("a", 90), "有一步要你拍板，我先盯着。"},
        Explanation{AttentionKind::agentDone, load("a", 90), "刚做完一轮，可以回头看一眼。"},
        Explanation{AttentionKind::quotaPressure, load("a", 90), "A 官方额度偏紧，我放慢一点。"},
        Explanation{AttentionKind::quotaPressure, load("a", 90, QuotaTrust::calibrated),
                    "A 负载偏高（历史估算，不是官方剩余），我有点蔫。"},
        Explanation{AttentionKind::quotaPressure, load("a", 90, QuotaTrust::metered),
                    "额度偏紧，先稳住节奏。"},
        Explanation{AttentionKind::quotaPressure, std::nullopt, "额度偏紧，先稳住节奏。"},
        Explanation{AttentionKind::running, load("a", 90), "有 agent 在干活，我陪着盯。"},
        Explanation{AttentionKind::connectorGap, load("a", 90), "细"},
        Explanation{AttentionKind::calm, std::nullopt, "一切平静。"},
        Explanation{AttentionKind::calm, load("a", std::nullopt), "一切平静。"},
        Explanation{AttentionKind::calm, load("a", 69), "一切平静。"},
        Explanation{AttentionKind::calm, load("a", 70, QuotaTrust::calibrated),
                    "A 约 70%（估算）。"},
        Explanation{AttentionKind::calm, load("a", 70), "A 70%（真实）。"},
        Explanation{AttentionKind::calm, load("a", 70, QuotaTrust::metered), "A 70%（真实）。"},
        Explanation{std::nullopt, load("a", 88), "A 88%（真实）。"},
        Explanation{std::nullopt, std::nullopt, "一切平静。"}));

TEST(AttentionEngineTest, TheAggregateIsTheHighestClampedPercentage) {
  EXPECT_EQ(AttentionEngine::aggregateLoadPct({}), std::nullopt);
  EXPECT_EQ(AttentionEngine::aggregateLoadPct({load("a", std::nullopt)}), std::nullopt);
  EXPECT_EQ(
      AttentionEngine::aggregateLoadPct({load("a", 12), load("b", std::nullopt), load("c", 34)}),
      34);
  EXPECT_EQ(AttentionEngine::aggregateLoadPct({load("a", 250)}), 100);
  EXPECT_EQ(AttentionEngine::aggregateLoadPct({load("a", -5)}), 0);
}

} // namespace
} // namespace morvo
