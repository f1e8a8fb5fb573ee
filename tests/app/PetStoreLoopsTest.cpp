#include "app/StoreFixture.h"

#include "platform/SettingKeys.h"

namespace morvo {
namespace {

using namespace std::chrono_literals;

class PetStoreLoopsTest : public test::StoreFixture {
protected:
  void careLastAt(Duration ago) {
    const auto now = std::chrono::duration<double>(m_clock.now().time_since_epoch()).count();
    set(SettingKeys::careLastAt, now - inSeconds(ago));
  }
};

TEST_F(PetStoreLoopsTest, TheCloudIsAskedAtOnceAndThenEachTenSeconds) {
  start();
  EXPECT_EQ(m_cloud.syncs, 1);
  advance(9999ms);
  EXPECT_EQ(m_cloud.syncs, 1);
  advance(1ms);
  EXPECT_EQ(m_cloud.syncs, 2);
  advance(100s);
  EXPECT_EQ(m_cloud.syncs, 12);
}

TEST_F(PetStoreLoopsTest, AnAnswerConnectsAndAFailureDisconnects) {
  m_cloud.answer = Quota{.conversationsRemaining = 3};
  start();
  EXPECT_TRUE(m_store->isConnected());
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::ready);
  EXPECT_EQ(m_store->quota().conversationsRemaining, 3);
  EXPECT_TRUE(m_store->isBootstrapped());
  m_cloud.answer.reset();
  advance(10s);
  EXPECT_FALSE(m_store->isConnected());
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::serverOffline);
  EXPECT_EQ(m_store->quota().conversationsRemaining, 3);
  EXPECT_TRUE(m_store->isBootstrapped());
}

TEST_F(PetStoreLoopsTest, OnlyTheFirstAnswerDerivesTheMood) {
  careLastAt(0s);
  m_cloud.answer = Quota{};
  start();
  EXPECT_EQ(m_body.moods, QStringList{QStringLiteral("calm")});
  EXPECT_EQ(m_store->mood(), QStringLiteral("calm"));
  advance(30s);
  EXPECT_EQ(m_body.moods.size(), 1);
}

TEST_F(PetStoreLoopsTest, ALoadThatLeavesTheChatHealthAloneDoesSo) {
  start();
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::serverOffline);
  m_cloud.answer = Quota{};
  m_store->load(false);
  EXPECT_TRUE(m_store->isConnected());
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::serverOffline);
}

TEST_F(PetStoreLoopsTest, TheLoginsTokenGoesWithEachLoad) {
  start();
  EXPECT_FALSE(m_cloud.accessToken.has_value());
  m_secrets.save(QStringLiteral("token"), QStringLiteral("ai.zentaro.morvopet.auth"),
                 QStringLiteral("access_token"));
  advance(10s);
  EXPECT_EQ(m_cloud.accessToken, QStringLiteral("token"));
}

TEST_F(PetStoreLoopsTest, TheFleetIsScannedOnlyWhileTheSettingIsOn) {
  m_fleet.sessions = {{.id = QStringLiteral("a"), .status = FleetStatus::running}};
  start();
  EXPECT_EQ(m_fleet.scans, 0);
  set(SettingKeys::fleet, true);
  advance(12s);
  EXPECT_EQ(m_fleet.scans, 1);
  EXPECT_EQ(m_store->fleet().size(), 1U);
  EXPECT_TRUE(m_body.quietMode);
  set(SettingKeys::fleet, false);
  advance(12s);
  EXPECT_EQ(m_fleet.scans, 1);
  EXPECT_TRUE(m_store->fleet().empty());
  EXPECT_FALSE(m_body.quietMode);
}

TEST_F(PetStoreLoopsTest, AFleetScanThatHangsNeitherKeepsOldNewsNorIsBegunTwice) {
  test::ManualScheduler stuck(m_clock);
  set(SettingKeys::fleet, true);
  m_fleet.gate = &stuck;
  start();
  sendAgent(QStringLiteral("done"));
  advance(192s);
  EXPECT_EQ(m_fleet.scans, 1);
  EXPECT_FALSE(m_store->recentDone().has_value());
  m_store.reset();
  stuck.advance(1s); // Lets the scan go.
}

TEST_F(PetStoreLoopsTest, SwitchedOffDuringAScanThatHangsTheFleetIsEmptyFromTheNextRoundOn) {
  m_fleet.sessions = {{.id = QStringLiteral("a"), .status = FleetStatus::running}};
  set(SettingKeys::fleet, true);
  start();
  ASSERT_EQ(m_store->fleet().size(), 1U);
  test::ManualScheduler stuck(m_clock);
  m_fleet.gate = &stuck;
  advance(12s);
  EXPECT_EQ(m_store->fleet().size(), 1U) << "what is known stands while a scan runs";
  set(SettingKeys::fleet, false);
  advance(12s);
  EXPECT_TRUE(m_store->fleet().empty());
  EXPECT_FALSE(m_body.quietMode);
  stuck.advance(1s);
  EXPECT_TRUE(m_store->fleet().empty()) << "a late scan brought it back";
}

TEST_F(PetStoreLoopsTest, AFleetScanThatEndsLateIsShownAtItsEnd) {
  m_fleet.sessions = {{.id = QStringLiteral("a"), .status = FleetStatus::running}};
  test::ManualScheduler stuck(m_clock);
  m_fleet.gate = &stuck;
  set(SettingKeys::fleet, true);
  start();
  EXPECT_TRUE(m_store->fleet().empty());
  stuck.advance(1s);
  EXPECT_EQ(m_store->fleet().size(), 1U);
  EXPECT_TRUE(m_body.quietMode);
  m_fleet.gate = nullptr;
  advance(12s);
  EXPECT_EQ(m_fleet.scans, 2);
}

TEST_F(PetStoreLoopsTest, TheFleetLoopRefreshesAttentionEachTwelveSeconds) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(180s);
  EXPECT_TRUE(m_store->recentDone().has_value());
  advance(12s);
  EXPECT_FALSE(m_store->recentDone().has_value());
}

TEST_F(PetStoreLoopsTest, AFreshInstallDropsTheEnergyToTheFloorAtOnce) {
  start();
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 25);
  EXPECT_EQ(m_store->mood(), QStringLiteral("calm"));
  advance(1h);
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 25);
}

TEST_F(PetStoreLoopsTest, WithinTwoHoursOfCareTheEnergyStays) {
  careLastAt(2h);
  start();
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 80);
}

TEST_F(PetStoreLoopsTest, FiveHoursWithoutCareTakeOnePointEachTwoMinutes) {
  careLastAt(5h);
  start();
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 79);
  advance(119s);
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 79);
  advance(1s);
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 78);
  advance(240s);
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 76);
}

TEST_F(PetStoreLoopsTest, AClockSetBackTakesNoEnergy) {
  careLastAt(-24h);
  start();
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 80);
}

TEST_F(PetStoreLoopsTest, AnUnreadableCareTimeCountsAsLongAgo) {
  set(SettingKeys::careLastAt, QStringLiteral("yesterday"));
  start();
  EXPECT_DOUBLE_EQ(m_store->needs().energy, 25);
}

TEST_F(PetStoreLoopsTest, UsageIsLookedAtEachFiveSecondsWhileItIsOff) {
  start();
  advance(60s);
  EXPECT_EQ(m_usage.captures, 0);
  set(SettingKeys::captureUsage, true);
  advance(4999ms);
  EXPECT_EQ(m_usage.captures, 0);
  advance(1ms);
  EXPECT_EQ(m_usage.captures, 1);
}

TEST_F(PetStoreLoopsTest, UsageIsCapturedAtOnceAndThenEachMinute) {
  set(SettingKeys::captureUsage, true);
  m_usage.result->weekTokens = 12;
  m_usage.result->agents = {{.id = QStringLiteral("claude")}};
  start();
  EXPECT_EQ(m_usage.captures, 1);
  EXPECT_EQ(m_store->usage().windowTokens, 12);
  EXPECT_EQ(m_store->detected().size(), 1U);
  advance(59999ms);
  EXPECT_EQ(m_usage.captures, 1);
  advance(1ms);
  EXPECT_EQ(m_usage.captures, 2);
}

TEST_F(PetStoreLoopsTest, TheCapturePeriodIsASettingAndSixtyForAnythingBelowOne) {
  set(SettingKeys::captureUsage, true);
  set(SettingKeys::captureSeconds, 7);
  start();
  advance(7s);
  EXPECT_EQ(m_usage.captures, 2);
  set(SettingKeys::captureSeconds, 0);
  advance(7s);
  EXPECT_EQ(m_usage.captures, 3);
  advance(59s);
  EXPECT_EQ(m_usage.captures, 3);
  advance(1s);
  EXPECT_EQ(m_usage.captures, 4);
}

} // namespace
} // namespace morvo
