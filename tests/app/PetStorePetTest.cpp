#include "app/StoreFixture.h"

#include "companion/Personas.h"
#include "platform/SettingKeys.h"

namespace morvo {
namespace {

using namespace std::chrono_literals;

class PetStorePetTest : public test::StoreFixture {
protected:
  void SetUp() override { set(SettingKeys::careLastAt, 4102444800.0); }
  /// Gives the pet a line that it has not said yet.
  void freshLine(int number) {
    putPetFile(QStringLiteral("lines.json"),
               QByteArray(R"({"done":[],"needsInput":[],"petted":["嘿)") +
                   QByteArray::number(number) +
                   R"("],"digest":[],"usage":[],"reflect":[],"rest":[]})");
    m_store->setPersona(m_store->persona());
  }
};

TEST_F(PetStorePetTest, PettingRaisesTheNeedsWithACapAndGivesHearts) {
  start();
  m_store->petTapped();
  EXPECT_EQ(m_store->needs(), (Needs{80, 82, 84, 3}));
  EXPECT_EQ(m_body.hearts, 1);
  for (int i = 0; i < 50; ++i) {
    m_store->petTapped();
  }
  EXPECT_EQ(m_store->needs(), (Needs{80, 100, 100, 100}));
  EXPECT_EQ(m_store->mood(), QStringLiteral("hype"));
  EXPECT_EQ(m_settings.object(SettingKeys::carePetCount)->toInt(), 51);
}

TEST_F(PetStorePetTest, PettingPlaysTheFirstPreferredActionThatHasFrames) {
  m_body.own(QStringLiteral("alert"));
  m_body.own(QStringLiteral("greet"));
  start();
  m_store->petTapped();
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("greet")});
}

TEST_F(PetStorePetTest, PettingFiveTimesInSixSecondsSpeaksOnce) {
  m_body.own(QStringLiteral("petted"));
  set(SettingKeys::carePetCount, 40); // Past the first milestone.
  set(SettingKeys::proactiveMinInterval, 5);
  start();
  for (int i = 0; i < 5; ++i) {
    // Another line each time, so that no repetition keeps the pet silent.
    freshLine(i);
    m_store->petTapped();
    advance(1200ms);
  }
  EXPECT_EQ(m_speech.spoken.size(), 1);
  EXPECT_EQ(m_store->needs().affinity, 100);
  EXPECT_EQ(m_store->needs().bond, 15);
}

TEST_F(PetStorePetTest, ASilentTapDoesNotPutOffTheNextLine) {
  m_body.own(QStringLiteral("petted"));
  set(SettingKeys::carePetCount, 40);
  set(SettingKeys::proactiveMinInterval, 5);
  start();
  freshLine(1);
  m_store->petTapped();
  advance(5s);
  freshLine(2);
  m_store->petTapped();
  EXPECT_EQ(m_speech.spoken.size(), 1);
  advance(2s);
  freshLine(3);
  m_store->petTapped();
  EXPECT_EQ(m_speech.spoken.size(), 2);
}

TEST_F(PetStorePetTest, WithoutFramesAndLinesPettingAnswersPlainly) {
  set(SettingKeys::carePetCount, 40);
  start();
  m_store->petTapped();
  EXPECT_EQ(m_store->reply(), QStringLiteral("摸摸～"));
}

TEST_F(PetStorePetTest, TheFirstClickOnAFreshInstallIsAMilestone) {
  m_body.own(QStringLiteral("petted"));
  start();
  m_store->petTapped();
  EXPECT_EQ(m_store->reply(), QStringLiteral("第一次互动"));
}

TEST_F(PetStorePetTest, FeedingRaisesTheNeedsIsReportedAndConsumesNoMilestone) {
  m_body.own(QStringLiteral("celebrate"));
  start();
  m_cloud.answer = Quota{.interactionsRemaining = 9};
  m_store->feed();
  EXPECT_EQ(m_store->needs(), (Needs{98, 86, 82, 0}));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("celebrate")});
  EXPECT_EQ(m_body.hearts, 1);
  EXPECT_EQ(m_cloud.interactions, QStringList{QStringLiteral("feed")});
  EXPECT_EQ(m_store->quota().interactionsRemaining, 9);
  EXPECT_TRUE(m_store->reply().isEmpty());
  m_store->feed();
  EXPECT_EQ(m_store->needs().belly, 100);
}

TEST_F(PetStorePetTest, FeedingWithoutFramesAnswersPlainlyAndAFailedReportLeavesTheQuota) {
  m_cloud.answer = Quota{.conversationsRemaining = 4, .interactionsRemaining = 2};
  start();
  const Quota before = m_store->quota();
  EXPECT_EQ(before.interactionsRemaining, 2);
  m_cloud.answer.reset();
  m_store->feed();
  EXPECT_EQ(m_store->reply(), QStringLiteral("吃饱啦"));
  EXPECT_EQ(m_store->quota(), before);
}

TEST_F(PetStorePetTest, AMissedMilestoneIsSkippedForGood) {
  m_body.own(QStringLiteral("petted"));
  set(SettingKeys::carePetCount, 9);
  start();
  m_store->feed();
  m_store->petTapped();
  EXPECT_TRUE(m_store->reply().isEmpty());
}

TEST_F(PetStorePetTest, AnActionWithoutFramesIsNamedByItsLabel) {
  m_body.catalog = {{.id = QStringLiteral("dance_id"),
                     .frameSet = QStringLiteral("dance"),
                     .label = QStringLiteral("跳舞")}};
  start();
  EXPECT_FALSE(m_store->playPetAction(QStringLiteral("dance_id")));
  EXPECT_EQ(m_store->reply(), QStringLiteral("「跳舞」没有动画帧（生成时可能失败了）"));
  EXPECT_FALSE(m_store->playPetAction(QStringLiteral("unknown")));
  EXPECT_EQ(m_store->reply(), QStringLiteral("「unknown」没有动画帧（生成时可能失败了）"));
  advance(6s);
  EXPECT_TRUE(m_store->reply().isEmpty());
}

TEST_F(PetStorePetTest, WithoutAnyFramesNoPreferenceCanBePlayed) {
  start();
  EXPECT_FALSE(m_store->playPetAction(QStringList{QStringLiteral("petted")}));
  EXPECT_EQ(m_store->reply(), QStringLiteral("还没有任何可播动作帧"));
}

TEST_F(PetStorePetTest, WithoutAPreferredActionTheFirstThatIsNotIdleIsPlayed) {
  m_body.own(QStringLiteral("idle"));
  m_body.own(QStringLiteral("swim"));
  start();
  EXPECT_TRUE(m_store->playPetAction(QStringList{QStringLiteral("petted")}));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("swim")});
}

TEST_F(PetStorePetTest, WhenAllAreIdleIdleIsPlayed) {
  m_body.own(QStringLiteral("idle"));
  start();
  EXPECT_TRUE(m_store->playPetAction(QStringList{QStringLiteral("petted")}));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("idle")});
}

TEST_F(PetStorePetTest, ARandomActionIsAnnouncedAndNeverIdle) {
  m_body.own(QStringLiteral("idle"));
  m_body.own(QStringLiteral("swim"), QStringLiteral("游泳"));
  start();
  m_store->playRandomPetAction();
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("swim")});
  EXPECT_EQ(m_store->reply(), QStringLiteral("来，看我「游泳」！"));
  EXPECT_TRUE(m_notifications.shown.isEmpty());
}

TEST_F(PetStorePetTest, WithoutAnActionToPerformThePetSaysSo) {
  m_body.own(QStringLiteral("idle"));
  start();
  m_store->playRandomPetAction();
  EXPECT_EQ(m_store->reply(), QStringLiteral("没有可表演的动作"));
  advance(6s);
  EXPECT_TRUE(m_store->reply().isEmpty());
}

TEST_F(PetStorePetTest, TheMoodIsPublishedOnChangeAndToldToThePetEveryTime) {
  start();
  int changes = 0;
  QObject::connect(m_store.get(), &PetStore::moodChanged, [&changes] { ++changes; });
  m_body.moods.clear();
  m_store->refreshPetMoodOnly();
  m_store->refreshPetMoodOnly();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(m_body.moods.size(), 2);
}

TEST_F(PetStorePetTest, ScaleAndOpacityAreClampedPublishedAndStored) {
  start();
  m_store->setPetScale(5);
  m_store->setPetOpacity(0);
  EXPECT_DOUBLE_EQ(m_store->petScale(), 2.4);
  EXPECT_DOUBLE_EQ(m_body.scale, 2.4);
  EXPECT_DOUBLE_EQ(m_settings.object(SettingKeys::petScale)->toDouble(), 2.4);
  EXPECT_DOUBLE_EQ(m_store->petOpacity(), 0.3);
  EXPECT_DOUBLE_EQ(m_body.opacity, 0.3);
  EXPECT_DOUBLE_EQ(m_settings.object(SettingKeys::petOpacity)->toDouble(), 0.3);
}

TEST_F(PetStorePetTest, AnotherPersonaBringsItsOwnThings) {
  start();
  m_store->setPersona(Personas::anime());
  EXPECT_EQ(m_store->persona(), Personas::anime());
  EXPECT_EQ(m_body.personas.back(), QStringLiteral("anime"));
  EXPECT_EQ(m_settings.object(SettingKeys::personaSelectedId)->toString(), QStringLiteral("anime"));
}

TEST_F(PetStorePetTest, OffersThePresetsThenTheUsersOwnPets) {
  set(SettingKeys::personaCustoms,
      QByteArray(R"([{"id":"custom-1","name":"团子","tier":2,"character":"圆"}])"));
  start();
  std::vector<PetChoice> expected;
  for (const MorvoPersona &persona : Personas::presets()) {
    expected.push_back({persona.id, persona.name, persona.id == u"morvo"});
  }
  expected.push_back({QStringLiteral("custom-1"), QStringLiteral("团子"), false});
  EXPECT_EQ(m_store->petChoices(), expected);

  m_store->choosePet(QStringLiteral("custom-1"));
  EXPECT_EQ(m_store->persona().name, QStringLiteral("团子"));
  EXPECT_TRUE(m_store->petChoices().back().isPresent);
  EXPECT_FALSE(m_store->petChoices().front().isPresent);
}

TEST_F(PetStorePetTest, ChoosingAPetThatIsGoneChangesNothing) {
  start();
  m_store->choosePet(QStringLiteral("custom-9"));
  EXPECT_EQ(m_store->persona(), Personas::morvo());
}

} // namespace
} // namespace morvo
