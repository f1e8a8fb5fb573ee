#include "app/StoreFixture.h"

#include "platform/SettingKeys.h"

namespace morvo {
namespace {

using namespace std::chrono_literals;

const QByteArray lines =
    R"({"done":["搞定"],"needsInput":["来看看"],"petted":["嘿嘿"],"digest":[],"usage":[],"reflect":[],"rest":[]})";

class PetStoreEventsTest : public test::StoreFixture {
protected:
  using Shown = QList<std::pair<QString, QString>>;
};

// Approvals.

TEST_F(PetStoreEventsTest, APermissionIsPendingAlarmsThePetAndIsAnnounced) {
  start();
  sendPermission(QStringLiteral("0123456789ab"), QStringLiteral("Bash"), QStringLiteral("ls"));
  EXPECT_EQ(m_store->pendingApproval(), (PermRequest{.id = QStringLiteral("0123456789ab"),
                                                     .tool = QStringLiteral("Bash"),
                                                     .summary = QStringLiteral("ls")}));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("alert")});
  EXPECT_EQ(m_notifications.shown,
            (Shown{{QStringLiteral("小沃·等你确认：Bash"), QStringLiteral("这步要不要批准？")}}));
  EXPECT_EQ(m_store->reply(), QStringLiteral("这步要不要批准？"));
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("权限：Bash：ls"));
}

TEST_F(PetStoreEventsTest, ThePacksOwnWordsAskForApproval) {
  putPetFile(QStringLiteral("lines.json"), lines);
  start();
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  EXPECT_EQ(m_store->reply(), QStringLiteral("来看看"));
}

TEST_F(PetStoreEventsTest, APermissionWithoutToolOrSummaryHasStandIns) {
  start();
  send({QJsonObject{{QStringLiteral("kind"), QStringLiteral("perm")},
                    {QStringLiteral("id"), QStringLiteral("a")},
                    {QStringLiteral("tool"), 5}}});
  EXPECT_EQ(m_store->pendingApproval()->tool, QStringLiteral("?"));
  EXPECT_TRUE(m_store->pendingApproval()->summary.isEmpty());
}

TEST_F(PetStoreEventsTest, ALaterRequestReplacesAnEarlierOneAndBubblesToo) {
  start();
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  sendPermission(QStringLiteral("b"), QStringLiteral("Edit"), {});
  EXPECT_EQ(m_store->pendingApproval()->id, QStringLiteral("b"));
  EXPECT_EQ(m_notifications.shown.size(), 2);
}

TEST_F(PetStoreEventsTest, APermissionWithoutAnIdIsNeverPendingAndIsReadAsIfItWereNotThere) {
  start();
  m_cloud.session = true;
  send({QJsonObject{{QStringLiteral("kind"), QStringLiteral("perm")},
                    {QStringLiteral("id"), 12},
                    {QStringLiteral("tool"), QStringLiteral("Bash")}}});
  EXPECT_FALSE(m_store->pendingApproval().has_value());
  EXPECT_TRUE(m_body.reactions.isEmpty());
  EXPECT_TRUE(m_notifications.shown.isEmpty());
  EXPECT_TRUE(m_cloud.posted.isEmpty());
}

TEST_F(PetStoreEventsTest, AnApprovalComesFirstAndNothingOfItsBatchGoesToTheCloud) {
  start();
  m_cloud.session = true;
  send({QJsonObject{{QStringLiteral("kind"), QStringLiteral("agent")},
                    {QStringLiteral("status"), QStringLiteral("done")}},
        QJsonObject{{QStringLiteral("kind"), QStringLiteral("perm")},
                    {QStringLiteral("id"), QStringLiteral("a")}}});
  EXPECT_TRUE(m_store->pendingApproval().has_value());
  EXPECT_FALSE(m_store->recentDone().has_value());
  EXPECT_TRUE(m_cloud.posted.isEmpty());
}

TEST_F(PetStoreEventsTest, WithPreciseEventsOffApprovalsStillWorkAndNothingElseChangesAnything) {
  set(SettingKeys::preciseEvents, false);
  start();
  m_cloud.session = true;
  sendAgent(QStringLiteral("done"));
  sendAgent(QStringLiteral("needs_input"));
  EXPECT_FALSE(m_store->recentDone().has_value());
  EXPECT_FALSE(m_store->softConfirm().has_value());
  EXPECT_TRUE(m_body.reactions.isEmpty());
  EXPECT_TRUE(m_notifications.shown.isEmpty());
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("都安静 · 没有要你拍板的事"));
  EXPECT_TRUE(m_cloud.posted.isEmpty());
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  EXPECT_TRUE(m_store->pendingApproval().has_value());
}

TEST_F(PetStoreEventsTest, APermissionWithNotificationsOffOnlyBubbles) {
  set(SettingKeys::notifications, false);
  start();
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  EXPECT_TRUE(m_notifications.shown.isEmpty());
  EXPECT_FALSE(m_store->reply().isEmpty());
}

// Agent events.

TEST_F(PetStoreEventsTest, ADoneAgentIsCelebratedNotifiedAndRemembered) {
  start();
  sendAgent(QStringLiteral("done"), QStringLiteral("重构"));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("celebrate")});
  EXPECT_EQ(
      m_store->recentDone(),
      (PetStore::RecentDone{QStringLiteral("claude"), QStringLiteral("重构"), m_clock.instant()}));
  EXPECT_EQ(m_notifications.shown,
            (Shown{{QStringLiteral("小沃·任务完成"), QStringLiteral("完成了。")}}));
  EXPECT_EQ(m_store->reply(), QStringLiteral("完成了。"));
  EXPECT_EQ(m_speech.spoken, QStringList{QStringLiteral("完成了。")});
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("claude · 重构 刚完成"));
}

TEST_F(PetStoreEventsTest, ADoneSignalWithoutALabelLeavesAnEmptyLabel) {
  start();
  sendAgent(QStringLiteral("done"));
  EXPECT_TRUE(m_store->recentDone()->label.isEmpty());
}

TEST_F(PetStoreEventsTest, AnAgentThatNeedsInputIsAnnouncedWithItsLabelOrTheStandardOne) {
  start();
  sendAgent(QStringLiteral("needs_input"), QStringLiteral("选一个"));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("alert")});
  EXPECT_EQ(m_store->softConfirm()->summary, QStringLiteral("选一个"));
  EXPECT_EQ(m_notifications.shown,
            (Shown{{QStringLiteral("小沃·等你确认"), QStringLiteral("停下来等你了。")}}));
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("claude：选一个"));
  sendAgent(QStringLiteral("needs_input"));
  EXPECT_EQ(m_store->softConfirm()->summary, QStringLiteral("需要你拍板"));
}

TEST_F(PetStoreEventsTest,
       ARunningAgentIsGreetedAndChangesAttentionWithoutBubbleVoiceOrNotification) {
  start();
  m_cloud.session = true;
  sendAgent(QStringLiteral("done"));
  advance(
      200s); // The refreshes of the fleet loop have dropped it; one more signal refreshes again.
  const auto bubbles = m_body.bubbles.size();
  const auto spoken = m_speech.spoken.size();
  const auto shown = m_notifications.shown.size();
  sendAgent(QStringLiteral("running"));
  EXPECT_EQ(m_body.reactions.back(), QStringLiteral("greet"));
  EXPECT_FALSE(m_store->recentDone().has_value());
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("都安静 · 没有要你拍板的事"));
  EXPECT_EQ(m_body.bubbles.size(), bubbles);
  EXPECT_EQ(m_speech.spoken.size(), spoken);
  EXPECT_EQ(m_notifications.shown.size(), shown);
  EXPECT_EQ(m_cloud.posted.size(), 2);
}

TEST_F(PetStoreEventsTest, OfNamesAndLabelsOfMegabytesOnlyTheBeginningIsKept) {
  start();
  const QString endless(10 << 20, u'x');
  const QString kept = QString(200, u'x') + QStringLiteral("……");
  sendAgent(QStringLiteral("needs_input"), endless, endless);
  EXPECT_EQ(m_store->softConfirm()->summary, kept);
  EXPECT_EQ(m_store->softConfirm()->agent, kept);
  sendAgent(QStringLiteral("done"), endless, endless);
  EXPECT_EQ(m_store->recentDone()->label, kept);
  EXPECT_EQ(m_store->recentDone()->agent, kept);
}

TEST_F(PetStoreEventsTest, AnAgentSignalWithoutAProviderIsCalledAgent) {
  start();
  send({QJsonObject{{QStringLiteral("kind"), QStringLiteral("agent")},
                    {QStringLiteral("status"), QStringLiteral("done")}}});
  EXPECT_EQ(m_store->recentDone()->agent, QStringLiteral("agent"));
}

TEST_F(PetStoreEventsTest, ThePackDecidesActionLineAndNotification) {
  putPetFile(QStringLiteral("lines.json"), lines);
  putPetFile(QStringLiteral("manifest.json"),
             R"({"actions":[{"id":"cheer","frameSet":"cheer_frames"}],
                 "reactions":[{"event":"agent_done","action":"cheer","notify":false}]})");
  start();
  sendAgent(QStringLiteral("done"));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("cheer_frames")});
  EXPECT_EQ(m_store->reply(), QStringLiteral("搞定"));
  EXPECT_TRUE(m_notifications.shown.isEmpty());
}

TEST_F(PetStoreEventsTest, APackRewrittenWhileTheProgramRunsActsAtTheNextEvent) {
  putPetFile(QStringLiteral("manifest.json"),
             R"({"reactions":[{"event":"agent_done","action":"first"}]})");
  start();
  sendAgent(QStringLiteral("done"));
  putPetFile(QStringLiteral("manifest.json"),
             R"({"reactions":[{"event":"agent_done","action":"second"}]})");
  sendAgent(QStringLiteral("done"));
  EXPECT_EQ(m_body.reactions, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

TEST_F(PetStoreEventsTest, TwoDoneSignalsWithTheSameLineGiveOneBubbleAndOneNotification) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(60s);
  sendAgent(QStringLiteral("done"));
  EXPECT_EQ(m_notifications.shown.size(), 1);
  EXPECT_EQ(m_speech.spoken.size(), 1);
  EXPECT_EQ(m_body.reactions.size(), 2);
}

TEST_F(PetStoreEventsTest, AChangedIntervalHoldsFromTheNextLineOn) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(6s);
  set(SettingKeys::proactiveMinInterval, 5);
  EXPECT_TRUE(m_store->reply().isEmpty());
  // Another line, since the first is still remembered.
  putPetFile(QStringLiteral("lines.json"), lines);
  m_store->setPersona(m_store->persona());
  sendAgent(QStringLiteral("done"));
  EXPECT_EQ(m_store->reply(), QStringLiteral("搞定"));
}

TEST_F(PetStoreEventsTest, EventsGoToTheCloudOnlyWithASession) {
  start();
  sendAgent(QStringLiteral("done"));
  EXPECT_TRUE(m_cloud.posted.isEmpty());
  m_cloud.session = true;
  sendAgent(QStringLiteral("done"));
  ASSERT_EQ(m_cloud.posted.size(), 1);
  EXPECT_EQ(m_cloud.posted.front().front().value(u"status").toString(), QStringLiteral("done"));
}

TEST_F(PetStoreEventsTest, ABatchWithoutAnAgentRefreshesAttentionOnly) {
  start();
  sendAgent(QStringLiteral("done"));
  advance(181s);
  ASSERT_TRUE(m_store->recentDone().has_value());
  send({});
  EXPECT_FALSE(m_store->recentDone().has_value());
}

TEST_F(PetStoreEventsTest, ASoftConfirmationIsHiddenByARealApprovalAndExpiresAfterTenMinutes) {
  start();
  sendAgent(QStringLiteral("needs_input"), QStringLiteral("选一个"));
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), QStringLiteral("ls"));
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("权限：Bash：ls"));
  advance(600s);
  EXPECT_TRUE(m_store->softConfirm().has_value());
  advance(12s);
  EXPECT_FALSE(m_store->softConfirm().has_value());
}

TEST_F(PetStoreEventsTest, SettingTheCalendarBackDoesNotKeepOldNewsAlive) {
  start();
  sendAgent(QStringLiteral("done"));
  m_clock.setCalendar(m_clock.now() - std::chrono::hours(48));
  advance(192s);
  EXPECT_FALSE(m_store->recentDone().has_value());
}

// The bubble.

TEST_F(PetStoreEventsTest, TheBubbleClearsAfterItsDwell) {
  start();
  m_store->say(QStringLiteral("嗨"));
  advance(5999ms);
  EXPECT_EQ(m_store->reply(), QStringLiteral("嗨"));
  advance(1ms);
  EXPECT_TRUE(m_store->reply().isEmpty());
  EXPECT_EQ(m_body.bubbles, (QStringList{QStringLiteral("嗨"), QString()}));
}

TEST_F(PetStoreEventsTest, ABubbleShownTwiceWithinTheDwellKeepsOnlyTheSecondsTimer) {
  start();
  m_store->say(QStringLiteral("一"));
  advance(5s);
  m_store->say(QStringLiteral("二"));
  advance(5s);
  EXPECT_EQ(m_store->reply(), QStringLiteral("二"));
  advance(1s);
  EXPECT_TRUE(m_store->reply().isEmpty());
}

TEST_F(PetStoreEventsTest, AnEmptySayClearsTheBubbleAndNeitherSpeaksNorStartsATimer) {
  start();
  m_store->say(QStringLiteral("一"));
  const auto pending = m_scheduler.pending();
  m_store->say({});
  EXPECT_TRUE(m_store->reply().isEmpty());
  EXPECT_EQ(m_speech.spoken.size(), 1);
  EXPECT_EQ(m_scheduler.pending(), pending);
}

struct DwellRow {
  double stored;
  double seconds;
};

class BubbleDwellTest : public test::StoreFixture, public testing::WithParamInterface<DwellRow> {};

TEST_P(BubbleDwellTest, IsClamped) {
  set(SettingKeys::bubbleDwell, GetParam().stored);
  start();
  m_store->say(QStringLiteral("嗨"));
  advance(seconds(GetParam().seconds) - 1ms);
  EXPECT_FALSE(m_store->reply().isEmpty());
  advance(1ms);
  EXPECT_TRUE(m_store->reply().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, BubbleDwellTest,
                         testing::Values(DwellRow{100, 20}, DwellRow{0, 2}, DwellRow{7.5, 7.5}));

TEST_F(PetStoreEventsTest, TheVoiceIsSilentWhenSwitchedOffAndUsesThePersonasVoice) {
  putPetFile(QStringLiteral("voice.json"), R"({"aiVoice":"Jada"})");
  start();
  m_store->say(QStringLiteral("一"));
  EXPECT_EQ(m_speech.lastProfile.aiVoice, QStringLiteral("Jada"));
  set(SettingKeys::voice, false);
  m_store->say(QStringLiteral("二"));
  EXPECT_EQ(m_speech.spoken, QStringList{QStringLiteral("一")});
}

TEST_F(PetStoreEventsTest, TheVoiceReportsItsHealthAlsoToAStoreThatIsGone) {
  start();
  m_store->say(QStringLiteral("一"));
  m_speech.status(voice_health::SystemSpeaking{});
  EXPECT_EQ(m_store->voiceHealth(), VoiceHealth(voice_health::SystemSpeaking{}));
  m_store.reset();
  m_speech.status(voice_health::Idle{});
}

} // namespace
} // namespace morvo
