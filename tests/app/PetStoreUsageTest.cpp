#include "app/StoreFixture.h"

#include "platform/SettingKeys.h"
#include "usage/UsageAnalytics.h"

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class PetStoreUsageTest : public test::StoreFixture {
protected:
  PetStoreUsageTest() {
    m_measure = [](const UsageSnapshot &snapshot) {
      return UsageStats{.weekTokens = snapshot.weekTokens, .usedPct = 33};
    };
  }
  static DetectedAgent claude(std::optional<double> livePct = std::nullopt) {
    DetectedAgent agent{.id = u"claude"_s, .name = u"Claude Code"_s};
    if (livePct) {
      agent.liveLimit = LiveRateLimit{.primaryPct = *livePct};
    }
    return agent;
  }
  static DetectedAgent codex() { return {.id = u"codex"_s, .name = u"Codex"_s}; }
  [[nodiscard]] QList<QJsonObject> lastPosted() const {
    return m_cloud.posted.isEmpty() ? QList<QJsonObject>() : m_cloud.posted.last();
  }
};

TEST_F(PetStoreUsageTest, ACapturePublishesTheAgentsTheirNamesAndTheFigures) {
  start();
  m_usage.result = UsageSnapshot{.agents = {claude(), codex()}, .events = {}, .weekTokens = 70};
  m_store->captureUsage();
  EXPECT_EQ(m_store->detected(), (std::vector{claude(), codex()}));
  EXPECT_EQ(m_store->sources(), (QStringList{u"Claude Code"_s, u"Codex"_s}));
  EXPECT_EQ(m_store->usage().weekTokens, 70);
}

TEST_F(PetStoreUsageTest, ACaptureWithoutAgentsLeavesTheFiguresAndSaysNothingToTheCloud) {
  start();
  m_usage.result = UsageSnapshot{.agents = {claude()}, .events = {}, .weekTokens = 70};
  m_store->captureUsage();
  m_cloud.posted.clear();
  m_usage.result = UsageSnapshot();
  m_store->captureUsage();
  EXPECT_TRUE(m_store->detected().empty());
  EXPECT_TRUE(m_store->sources().isEmpty());
  EXPECT_EQ(m_store->usage().weekTokens, 70);
  EXPECT_TRUE(m_cloud.posted.isEmpty());
}

TEST_F(PetStoreUsageTest, ACaptureThatGotNoAnswerChangesNothing) {
  start();
  m_usage.result = UsageSnapshot{.agents = {claude()}, .events = {}, .weekTokens = 70};
  m_store->captureUsage();
  m_cloud.posted.clear();
  m_usage.result.reset();
  m_usage.agentsThere.reset();
  m_store->captureUsage();
  m_store->scanSourcesOnly(false);
  EXPECT_EQ(m_store->detected(), std::vector{claude()});
  EXPECT_EQ(m_store->usage().weekTokens, 70);
  EXPECT_TRUE(m_cloud.posted.isEmpty());
}

TEST_F(PetStoreUsageTest, AfterACaptureAttentionIsRefreshed) {
  start();
  sendAgent(u"done"_s);
  advance(150s);
  ASSERT_TRUE(m_store->recentDone());
  m_clock.advance(31s); // Past its life, while no loop has come round.
  m_store->captureUsage();
  EXPECT_FALSE(m_store->recentDone()) << "after an empty capture";
  sendAgent(u"done"_s);
  m_clock.advance(181s);
  m_usage.result = UsageSnapshot{.agents = {claude()}, .events = {}, .weekTokens = 0};
  m_store->captureUsage();
  EXPECT_FALSE(m_store->recentDone());
}

TEST_F(PetStoreUsageTest, TheCloudIsToldThePercentageOfTheFigures) {
  start();
  m_usage.result->agents = {codex()};
  m_store->captureUsage();
  EXPECT_EQ(lastPosted(),
            (QList{QJsonObject{
                {u"kind"_s, u"usage"_s}, {u"provider"_s, u"local"_s}, {u"usedPct"_s, 33}}}));
}

TEST_F(PetStoreUsageTest, TheCloudIsToldTheAgentsOwnFigureWhereThereIsOne) {
  start();
  m_usage.result->agents = {claude(40)};
  m_store->captureUsage();
  ASSERT_EQ(lastPosted().size(), 1);
  EXPECT_EQ(lastPosted().first().value(u"usedPct"), 40);
  m_usage.result->agents = {claude(1)};
  m_store->captureUsage();
  EXPECT_EQ(lastPosted().first().value(u"usedPct"), 1);
  m_usage.result->agents = {claude(0)};
  m_store->captureUsage();
  EXPECT_EQ(lastPosted().first().value(u"usedPct"), 33) << "nothing used is no figure";
}

TEST_F(PetStoreUsageTest, AShallowLookPublishesTheAgentsAndReadsNoLog) {
  start();
  m_usage.agentsThere = std::vector{codex()};
  connector(0).connected = true;
  m_store->scanSourcesOnly(false);
  EXPECT_TRUE(m_store->claudeConnected());
  EXPECT_EQ(m_usage.captures, 0);
  EXPECT_EQ(m_usage.looks, 1);
  EXPECT_EQ(m_store->detected(), std::vector{codex()});
  EXPECT_EQ(m_store->sources(), QStringList{u"Codex"_s});
  EXPECT_EQ(m_store->usage(), UsageStats());
  EXPECT_TRUE(m_cloud.posted.isEmpty());
}

TEST_F(PetStoreUsageTest, AfterAShallowLookAttentionIsRefreshed) {
  start();
  m_usage.agentsThere = std::vector{claude(85)};
  m_store->scanSourcesOnly(false);
  ASSERT_EQ(m_store->sourceLoads().size(), 1U);
  EXPECT_EQ(m_store->attentionItems().front().id, u"quota-claude"_s);
}

TEST_F(PetStoreUsageTest, ADeepLookIsACaptureWhateverTheSettingSays) {
  start();
  m_usage.result->agents = {codex()};
  m_store->scanSourcesOnly(true);
  EXPECT_EQ(m_usage.captures, 1);
  EXPECT_EQ(m_usage.looks, 0);
  EXPECT_EQ(m_store->detected(), std::vector{codex()});
}

TEST_F(PetStoreUsageTest, WithTheSettingOnEveryLookIsACapture) {
  start();
  set(SettingKeys::captureUsage, true);
  m_store->scanSourcesOnly(false);
  EXPECT_EQ(m_usage.captures, 1);
  EXPECT_EQ(m_usage.looks, 0);
}

TEST_F(PetStoreUsageTest, TheStoreMayEndDuringACaptureOrALook) {
  m_usage.gate = &m_scheduler;
  set(SettingKeys::captureUsage, true);
  start();
  EXPECT_EQ(m_usage.captures, 1);
  m_store->scanSourcesOnly(true);
  set(SettingKeys::captureUsage, false);
  m_store->scanSourcesOnly(false);
  m_store.reset();
  advance(10s);
}

TEST_F(PetStoreUsageTest, TheNextCaptureComesAPeriodAfterTheEndOfTheLast) {
  m_usage.gate = &m_scheduler; // A capture takes a second.
  set(SettingKeys::captureUsage, true);
  set(SettingKeys::captureSeconds, -5);
  start();
  EXPECT_EQ(m_usage.captures, 1);
  advance(60999ms);
  EXPECT_EQ(m_usage.captures, 1);
  advance(1ms);
  EXPECT_EQ(m_usage.captures, 2);
  advance(1s); // Lets the second one end.
}

TEST_F(PetStoreUsageTest, SwitchingTheCaptureOffEndsItAtTheNextRound) {
  set(SettingKeys::captureUsage, true);
  start();
  set(SettingKeys::captureUsage, false);
  advance(600s);
  EXPECT_EQ(m_usage.captures, 1);
}

TEST_F(PetStoreUsageTest, ACountThatIsNoLongerTakenTeachesNothing) {
  UsageCalibrator calibrator(m_settings, m_clock);
  m_measure = [&](const UsageSnapshot &snapshot) {
    return UsageAnalytics::compute(snapshot.events, snapshot.weekTokens, m_clock.now(), calibrator);
  };
  m_learnedPct = [&](std::int64_t tokens) { return calibrator.usedPct(tokens); };
  DetectedAgent agent = claude();
  agent.windowTokens = 1000;
  start();
  m_usage.result = UsageSnapshot{
      .agents = {agent}, .events = {{.ts = m_clock.now(), .billable = 1000}}, .weekTokens = 1000};
  m_store->captureUsage();
  ASSERT_EQ(m_store->sourceLoads().front().usedPct, 50);
  advance(25h);
  m_store->refreshAttention();
  EXPECT_FALSE(m_settings.object(SettingKeys::usageBlockPeaks));
  EXPECT_EQ(m_store->sourceLoads().front().usedPct, 50);
  EXPECT_EQ(m_store->attentionItems().front().kind, AttentionKind::calm);
  m_usage.result = UsageSnapshot{.agents = {claude()}};
  m_store->captureUsage();
  EXPECT_EQ(m_settings.object(SettingKeys::usageBlockPeaks), u"1000"_s);
}

TEST_F(PetStoreUsageTest, WithoutASourceNothingHappens) {
  m_ownedUsage.reset();
  set(SettingKeys::captureUsage, true);
  start();
  advance(120s);
  m_store->scanSourcesOnly(true);
  set(SettingKeys::captureUsage, false);
  m_store->scanSourcesOnly(false);
  EXPECT_TRUE(m_store->detected().empty());
}

} // namespace
} // namespace morvo
