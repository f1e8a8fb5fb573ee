#include "app/StoreFixture.h"

#include "companion/Personas.h"
#include "platform/SettingKeys.h"

#include <QDateTime>
#include <QFile>
#include <QMetaProperty>

namespace morvo {
namespace {

using namespace std::chrono_literals;

class PetStoreStartTest : public test::StoreFixture {};

TEST_F(PetStoreStartTest, TheFieldsBeginAsTold) {
  set(SettingKeys::careLastAt, 4102444800.0); // Cared for in the future: energy stays.
  start();
  EXPECT_EQ(m_store->mood(), QStringLiteral("…"));
  EXPECT_EQ(m_store->needs(), (Needs{80, 80, 80, 0}));
  EXPECT_EQ(m_store->quota(), Quota{});
  EXPECT_FALSE(m_store->isConnected());
  EXPECT_TRUE(m_store->reply().isEmpty());
  EXPECT_FALSE(m_store->isThinking());
  EXPECT_TRUE(m_store->messages().empty());
  EXPECT_TRUE(m_store->sources().isEmpty());
  EXPECT_TRUE(m_store->detected().empty());
  EXPECT_FALSE(m_store->claudeConnected());
  EXPECT_FALSE(m_store->codexConnected());
  EXPECT_FALSE(m_store->geminiConnected());
  EXPECT_FALSE(m_store->cursorConnected());
  EXPECT_EQ(m_store->persona(), Personas::morvo());
  EXPECT_TRUE(m_store->fleet().empty());
  EXPECT_TRUE(m_store->sourceLoads().empty());
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("都安静 · 没有要你拍板的事"));
  EXPECT_EQ(m_store->attentionExplain(), QStringLiteral("一切平静。"));
  EXPECT_FALSE(m_store->recentDone().has_value());
  EXPECT_FALSE(m_store->softConfirm().has_value());
  EXPECT_FALSE(m_store->linePack().has_value());
  EXPECT_EQ(m_store->growth().title, QStringLiteral("幼年期"));
  EXPECT_DOUBLE_EQ(m_store->petScale(), 1.4);
  EXPECT_DOUBLE_EQ(m_store->petOpacity(), 1.0);
  EXPECT_FALSE(m_store->pendingApproval().has_value());
  EXPECT_EQ(m_store->voiceProfile(), VoiceProfile{});
  EXPECT_EQ(m_store->voiceHealth(), VoiceHealth(voice_health::Idle{}));
  EXPECT_TRUE(m_store->profile().isEmpty());
  EXPECT_FALSE(m_store->isCloning());
  EXPECT_FALSE(m_store->genProgress().has_value());
  EXPECT_DOUBLE_EQ(m_store->genFraction(), 0);
  EXPECT_FALSE(m_store->genError().has_value());
  EXPECT_FALSE(m_store->productAccessGranted());
  EXPECT_EQ(m_store->chatAccessLabel(), QStringLiteral("—"));
  EXPECT_EQ(m_store->imageAccessLabel(), QStringLiteral("—"));
  EXPECT_FALSE(m_store->accessApplyMessage().has_value());
  EXPECT_EQ(m_store->usage(), UsageStats{});
  EXPECT_FALSE(m_store->isBootstrapped());
}

TEST_F(PetStoreStartTest, EveryPublishedFieldIsAPropertyWithASignal) {
  start();
  const QMetaObject *meta = m_store->metaObject();
  QStringList published;
  for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
    const QMetaProperty property = meta->property(i);
    EXPECT_TRUE(property.hasNotifySignal()) << property.name();
    EXPECT_FALSE(property.isWritable()) << property.name();
    published.append(QString::fromLatin1(property.name()));
  }
  EXPECT_EQ(published.size(), 36);
  EXPECT_TRUE(published.contains(QStringLiteral("pendingApproval")));
}

TEST_F(PetStoreStartTest, TheChatIsBeingCheckedUntilTheFirstAnswer) {
  m_cloud.gate = &m_scheduler;
  start();
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::checking);
  advance(1s);
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::serverOffline);
}

TEST_F(PetStoreStartTest, WithoutACloudTheChatIsOffline) {
  m_ownedCloud.reset();
  start();
  EXPECT_EQ(m_store->chatHealth(), ChatHealth::serverOffline);
}

TEST_F(PetStoreStartTest, TheKeyringsArrivalAsksTheCloudAgain) {
  start();
  EXPECT_EQ(m_cloud.syncs, 1);
  m_secrets.save(QStringLiteral("token"), QStringLiteral("ai.zentaro.morvopet.auth"),
                 QStringLiteral("access_token"));
  m_secrets.load();
  EXPECT_EQ(m_cloud.syncs, 2);
  EXPECT_EQ(m_cloud.accessToken, QStringLiteral("token"));
}

TEST_F(PetStoreStartTest, AnswersThatComeAfterTheStoreHasGoneFindNothing) {
  set(SettingKeys::fleet, true);
  set(SettingKeys::captureUsage, true);
  m_cloud.gate = &m_scheduler;
  m_fleet.gate = &m_scheduler;
  m_usage.gate = &m_scheduler;
  start();
  m_store->feed();
  m_secrets.load();
  m_store.reset();
  m_secrets.load();
  advance(10s);
  EXPECT_EQ(m_body.visibility.size(), 1);
}

TEST_F(PetStoreStartTest, StoredScaleAndOpacityReachThePet) {
  set(SettingKeys::petScale, 9.0);
  set(SettingKeys::petOpacity, 0.1);
  start();
  EXPECT_DOUBLE_EQ(m_store->petScale(), 2.4);
  EXPECT_DOUBLE_EQ(m_body.scale, 2.4);
  EXPECT_DOUBLE_EQ(m_body.opacity, 0.3);
}

TEST_F(PetStoreStartTest, AScaleThatIsNoNumberIsTheStandardOne) {
  set(SettingKeys::petScale, QStringLiteral("big"));
  start();
  EXPECT_DOUBLE_EQ(m_store->petScale(), 1.4);
}

TEST_F(PetStoreStartTest, TheGateTakesItsSettingsWithTheirFloors) {
  set(SettingKeys::proactiveMinInterval, 1);
  set(SettingKeys::proactiveDedupWindow, 1);
  start();
  EXPECT_DOUBLE_EQ(m_store->gate().minInterval, 5);
  EXPECT_DOUBLE_EQ(m_store->gate().dedupWindow, 30);
}

TEST_F(PetStoreStartTest, HomeAndInboxAreMadeButNoScriptsBeforeTheUserConnects) {
  start();
  EXPECT_TRUE(QFile::exists(m_folder.filePath(QStringLiteral(".morvo/inbox.jsonl"))));
  EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral(".morvo/hook.sh"))));
}

TEST_F(PetStoreStartTest, InstalledScriptsAreRolledForward) {
  const QString script = m_folder.filePath(QStringLiteral(".morvo/hook.sh"));
  ASSERT_TRUE(m_layer.makeDirectories(m_folder.filePath(QStringLiteral(".morvo")), 0700));
  QFile old(script);
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write("old");
  old.close();
  start();
  EXPECT_NE(*m_layer.read(script), "old");
  EXPECT_TRUE(QFile::exists(m_folder.filePath(QStringLiteral(".morvo/perm.sh"))));
}

TEST_F(PetStoreStartTest, ThePersonasFilesAreLoaded) {
  putPetFile(
      QStringLiteral("lines.json"),
      R"({"done":["好"],"needsInput":[],"petted":[],"digest":[],"usage":[],"reflect":[],"rest":[]})");
  putPetFile(QStringLiteral("voice.json"), R"({"aiVoice":"Ethan"})");
  putPetFile(QStringLiteral("profile.json"), R"({"selfName":"沃沃"})");
  start();
  EXPECT_EQ(m_store->linePack()->done, QStringList{QStringLiteral("好")});
  EXPECT_EQ(m_store->voiceProfile().aiVoice, QStringLiteral("Ethan"));
  EXPECT_EQ(m_store->profile().selfName, QStringLiteral("沃沃"));
  EXPECT_EQ(m_body.personas, QStringList{QStringLiteral("morvo")});
}

TEST_F(PetStoreStartTest, ThePetIsShownOrHiddenAsTheSettingSays) {
  start();
  EXPECT_EQ(m_body.visibility, QList<bool>{true});
}

TEST_F(PetStoreStartTest, AHiddenPetStaysHidden) {
  set(SettingKeys::desktopPet, false);
  start();
  EXPECT_EQ(m_body.visibility, QList<bool>{false});
}

TEST_F(PetStoreStartTest, TheOldGrowthIsWipedOnce) {
  set(SettingKeys::growthXp, 500);
  start();
  EXPECT_EQ(m_store->growth().xp, 0);
  EXPECT_TRUE(m_settings.object(SettingKeys::growthWiped)->toBool());
}

TEST_F(PetStoreStartTest, TheDemoPetIsTappedAfterThreeSeconds) {
  m_environment.insert(QStringLiteral("MORVO_DEMO_PET"), QStringLiteral("1"));
  start();
  advance(2999ms);
  EXPECT_EQ(m_body.hearts, 0);
  advance(1ms);
  EXPECT_EQ(m_body.hearts, 1);
}

TEST_F(PetStoreStartTest, WithoutTheDemoVariableNobodyTapsThePet) {
  m_environment.insert(QStringLiteral("MORVO_DEMO_PET"), QStringLiteral("yes"));
  start();
  advance(10s);
  EXPECT_EQ(m_body.hearts, 0);
}

TEST_F(PetStoreStartTest, DoneTodayIsReadAndNeverWritten) {
  start();
  EXPECT_EQ(m_store->doneToday(), 0);
  const auto today =
      QDateTime::fromMSecsSinceEpoch(m_clock.now().time_since_epoch().count()).date();
  set(SettingKeys::doneDate, today.toString(Qt::ISODate));
  set(SettingKeys::doneCount, 4);
  EXPECT_EQ(m_store->doneToday(), 4);
  sendAgent(QStringLiteral("done"));
  EXPECT_EQ(m_settings.object(SettingKeys::doneCount)->toInt(), 4);
  set(SettingKeys::doneDate, today.addDays(-1).toString(Qt::ISODate));
  EXPECT_EQ(m_store->doneToday(), 0);
}

TEST_F(PetStoreStartTest, NothingOfTheLoopsRunsOnAStoreThatIsGone) {
  start();
  m_store.reset();
  advance(1h);
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

} // namespace
} // namespace morvo
