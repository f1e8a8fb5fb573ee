#include "app/StoreFixture.h"

#include "platform/SettingKeys.h"

namespace morvo {
namespace {

using namespace std::chrono_literals;

class PetStoreAttentionTest : public test::StoreFixture {
protected:
  /// Starts a store that has found these agents.
  void startWith(std::vector<DetectedAgent> agents) {
    set(SettingKeys::captureUsage, true);
    m_usage.result->agents = std::move(agents);
    start();
  }
  [[nodiscard]] QStringList ids() const {
    QStringList list;
    for (const AttentionItem &item : m_store->attentionItems()) {
      list << item.id;
    }
    return list;
  }
};

DetectedAgent limited(const QString &id, double primaryPct) {
  return {.id = id,
          .name = id.toUpper(),
          .liveLimit = LiveRateLimit{.primaryPct = primaryPct, .weeklyPct = 10}};
}

TEST_F(PetStoreAttentionTest, WithNoAgentsEverythingIsCalm) {
  start();
  EXPECT_EQ(ids(), QStringList{QStringLiteral("calm")});
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("都安静 · 没有要你拍板的事"));
  EXPECT_EQ(m_store->attentionExplain(), QStringLiteral("一切平静。"));
  EXPECT_TRUE(m_store->sourceLoads().empty());
}

TEST_F(PetStoreAttentionTest, AfterACaptureLoadsHeadlineAndSentenceAreRightAtOnce) {
  startWith({limited(QStringLiteral("claude"), 69.6), limited(QStringLiteral("codex"), 90)});
  ASSERT_EQ(m_store->sourceLoads().size(), 2U);
  EXPECT_EQ(m_store->sourceLoads().front().usedPct, 70);
  EXPECT_EQ(ids(), (QStringList{QStringLiteral("quota-claude"), QStringLiteral("quota-codex")}));
  EXPECT_EQ(m_store->attentionHeadline(),
            QStringLiteral("CLAUDE 额度偏紧 · 5h 70% · 0（真实额度）"));
  EXPECT_EQ(m_store->attentionExplain(), QStringLiteral("CODEX 官方额度偏紧，我放慢一点。"));
}

TEST_F(PetStoreAttentionTest, AnAgentWithoutOfficialFiguresIsEstimatedByWhatWasLearned) {
  m_learnedPct = [](std::int64_t tokens) { return tokens == 1500 ? 81 : 0; };
  startWith(
      {{.id = QStringLiteral("gemini"), .name = QStringLiteral("Gemini"), .windowTokens = 1500}});
  EXPECT_EQ(m_store->attentionHeadline(),
            QStringLiteral("Gemini 额度偏紧 · 5h·估 81% · 1.5K（估算，非官方）"));
  EXPECT_EQ(m_store->attentionExplain(),
            QStringLiteral("Gemini 负载偏高（历史估算，不是官方剩余），我有点蔫。"));
}

TEST_F(PetStoreAttentionTest, TheSnapshotHoldsTheEightFlagsAndTheCountOfRunningSessions) {
  connector(1).connected = true;
  connector(2).connected = true;
  set(SettingKeys::fleet, true);
  m_fleet.sessions = {{.id = QStringLiteral("a"), .status = FleetStatus::running},
                      {.id = QStringLiteral("b"), .status = FleetStatus::idle},
                      {.id = QStringLiteral("c"), .status = FleetStatus::running},
                      {.id = QStringLiteral("d"), .status = FleetStatus::done}};
  startWith({{.id = QStringLiteral("codex")},
             {.id = QStringLiteral("cursor")},
             {.id = QStringLiteral("opencode")}});
  AttentionSnapshot expected;
  expected.loads = m_store->sourceLoads();
  expected.runningCount = 2;
  expected.codexDetected = true;
  expected.codexHooked = true;
  expected.geminiHooked = true;
  expected.cursorDetected = true;
  EXPECT_EQ(m_store->attentionSnapshot(), expected);
  m_store->setClaudeConnected(true);
  EXPECT_TRUE(m_store->attentionSnapshot().claudeHooked);
}

TEST_F(PetStoreAttentionTest, ThePetIsQuietWhileASessionRunsAndOnlyThen) {
  set(SettingKeys::fleet, true);
  m_fleet.sessions = {{.id = QStringLiteral("a"), .status = FleetStatus::idle}};
  start();
  EXPECT_FALSE(m_body.quietMode);
  m_fleet.sessions.front().status = FleetStatus::running;
  advance(12s);
  EXPECT_TRUE(m_body.quietMode);
  set(SettingKeys::fleet, false);
  advance(12s);
  EXPECT_TRUE(m_store->fleet().empty());
  EXPECT_EQ(m_store->attentionSnapshot().runningCount, 0);
  EXPECT_FALSE(m_body.quietMode);
}

TEST_F(PetStoreAttentionTest, ADoneEventIsNewsForThreeMinutes) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(180s);
  m_store->refreshAttention();
  EXPECT_EQ(ids(), QStringList{QStringLiteral("done-claude")});
  advance(1ms);
  m_store->refreshAttention();
  EXPECT_EQ(ids(), QStringList{QStringLiteral("calm")});
}

TEST_F(PetStoreAttentionTest, ASoftConfirmationWaitsForTenMinutes) {
  start();
  sendAgent(QStringLiteral("needs_input"));
  advance(600s);
  m_store->refreshAttention();
  EXPECT_EQ(ids(), QStringList{QStringLiteral("confirm")});
  advance(1ms);
  m_store->refreshAttention();
  EXPECT_EQ(ids(), QStringList{QStringLiteral("calm")});
}

TEST_F(PetStoreAttentionTest, OldNewsGoesWithTheNextRoundOfTheFleetLoop) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(191s);
  EXPECT_EQ(ids(), QStringList{QStringLiteral("done-claude")});
  advance(1s);
  EXPECT_EQ(ids(), QStringList{QStringLiteral("calm")});
}

} // namespace
} // namespace morvo
