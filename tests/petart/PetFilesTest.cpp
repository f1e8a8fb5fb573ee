#include "BuiltInPet.h"
#include "base/Json.h"
#include "companion/LinePack.h"
#include "pet/ContentFile.h"
#include "pet/MenubarFrames.h"
#include "pet/MorvoSprites.h"
#include "pet/PetPack.h"
#include "pet/PetVitals.h"
#include "voice/VoiceProfile.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <utility>

namespace morvo {
namespace {

using test::BuiltInPet;

class PetFilesTest : public testing::TestWithParam<std::string> {
protected:
  [[nodiscard]] QByteArray bytes(const QString &name) const {
    QFile file(m_pet.folder(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  [[nodiscard]] PetPack pack() const {
    const auto pack = petPackFromJson(bytes(QStringLiteral("manifest.json")));
    EXPECT_TRUE(pack);
    return pack.value_or(PetPack());
  }
  [[nodiscard]] static bool owns(const PetPack &pack, const QString &id) {
    return std::ranges::any_of(pack.actions,
                               [&id](const PetPack::Action &action) { return action.id == id; });
  }
  [[nodiscard]] PetFiles files() const {
    return {.home = HomeFolder{m_home.path()}, .resources = BuiltInPet::resources()};
  }

  BuiltInPet m_pet{GetParam()};
  QTemporaryDir m_home;
};

TEST_P(PetFilesTest, NamesItself) {
  EXPECT_EQ(pack().id, m_pet.id());
  EXPECT_FALSE(pack().displayName.isEmpty());
  EXPECT_FALSE(pack().personaPrompt.isEmpty());
}

TEST_P(PetFilesTest, EveryActionHasFramesAChineseLabelAndTags) {
  const PetPack pet = pack();
  EXPECT_FALSE(pet.actions.empty());
  QStringList labels;
  for (const auto &action : pet.actions) {
    EXPECT_GE(m_pet.frames(action.frameSet), 2) << action.id.toStdString();
    EXPECT_FALSE(action.tags.isEmpty()) << action.id.toStdString();
    EXPECT_TRUE(std::ranges::any_of(action.label, [](QChar letter) {
      return letter.script() == QChar::Script_Han;
    })) << action.id.toStdString();
    labels.append(action.label);
  }
  EXPECT_EQ(labels.removeDuplicates(), 0);
}

TEST_P(PetFilesTest, EveryRuleNamesAnActionThatItOwns) {
  const PetPack pet = pack();
  for (const auto &rule : pet.reactions) {
    EXPECT_TRUE(owns(pet, rule.action)) << rule.action.toStdString();
  }
  for (const auto &rule : pet.loops) {
    EXPECT_TRUE(owns(pet, rule.action)) << rule.action.toStdString();
  }
  EXPECT_FALSE(pet.autonomousActions.isEmpty());
  for (const QString &id : pet.autonomousActions) {
    EXPECT_TRUE(owns(pet, id)) << id.toStdString();
  }
}

TEST_P(PetFilesTest, AnswersTheAgentsAndTheHand) {
  const PetPack pet = pack();
  EXPECT_EQ(pet.actionID(PetEventKind::agentDone), QStringLiteral("celebrate"));
  EXPECT_EQ(pet.actionID(PetEventKind::agentNeedsInput), QStringLiteral("alert"));
  const auto running = pet.actionID(PetEventKind::agentRunning);
  ASSERT_TRUE(running);
  // A loop would go on until the next one-shot, and an agent that dies never tells its end.
  EXPECT_TRUE(PetVitals::isOneshotOnlyFrameSet(pet.frameSet(*running), pet));
  EXPECT_EQ(pet.actionID(PetEventKind::userPet), QStringLiteral("petted"));
  EXPECT_EQ(pet.lineBucketFor(PetEventKind::agentDone), LineBucket::done);
  EXPECT_EQ(pet.lineBucketFor(PetEventKind::agentNeedsInput), LineBucket::needsInput);
  EXPECT_EQ(pet.lineBucketFor(PetEventKind::userPet), LineBucket::petted);
  EXPECT_TRUE(pet.notify(PetEventKind::agentDone, false));
  EXPECT_TRUE(pet.notify(PetEventKind::agentNeedsInput, false));
}

TEST_P(PetFilesTest, EveryMoodHasALoopThatMayRest) {
  const PetPack pet = pack();
  for (const QString &mood :
       {QStringLiteral("calm"), QStringLiteral("happy"), QStringLiteral("hype"),
        QStringLiteral("hungry"), QStringLiteral("sleepy"), QStringLiteral("lonely"),
        QStringLiteral("focused"), QStringLiteral("dreamy")}) {
    ASSERT_TRUE(pet.hasLoopRule(mood)) << mood.toStdString();
    const QString set = pet.loopAction(mood);
    EXPECT_FALSE(PetVitals::isOneshotOnlyFrameSet(set, pet)) << mood.toStdString();
  }
}

TEST_P(PetFilesTest, MovesInItsTemperament) {
  const auto motion = pack().motion;
  ASSERT_TRUE(motion);
  ASSERT_TRUE(motion->style);
  EXPECT_TRUE(*motion->style == QStringLiteral("floaty") ||
              *motion->style == QStringLiteral("grounded"));
  EXPECT_TRUE(motion->tempo);
}

TEST_P(PetFilesTest, SpeaksInSevenScenesInShortLinesNoneOfThemTwice) {
  const auto json = Json::parseObject(bytes(QStringLiteral("lines.json")));
  ASSERT_TRUE(json);
  const auto lines = linePackFromJson(*json);
  ASSERT_TRUE(lines);
  constexpr std::array<std::pair<LineBucket, int>, 7> scenes{{
      {LineBucket::done, 4},
      {LineBucket::needsInput, 3},
      {LineBucket::petted, 4},
      {LineBucket::digest, 3},
      {LineBucket::usage, 3},
      {LineBucket::reflect, 4},
      {LineBucket::rest, 4},
  }};
  QStringList said;
  for (const auto &[bucket, least] : scenes) {
    EXPECT_GE(lines->lines(bucket).size(), least) << rawValue(bucket).toStdString();
    said += lines->lines(bucket);
  }
  for (const QString &line : std::as_const(said)) {
    EXPECT_GE(line.size(), 8) << line.toStdString();
    EXPECT_LE(line.size(), 22) << line.toStdString();
  }
  EXPECT_EQ(said.removeDuplicates(), 0);
}

TEST_P(PetFilesTest, HasAVoiceOfItsOwn) {
  const auto json = Json::parseObject(bytes(QStringLiteral("voice.json")));
  ASSERT_TRUE(json);
  const VoiceProfile voice = voiceProfileFromJson(*json);
  EXPECT_NE(voice, VoiceProfile());
  EXPECT_EQ(toJson(voice), *json) << "a key that no one reads, or of another type";
}

TEST_P(PetFilesTest, TheCropSquareTakenAtBuildTimeIsTheOneTheFramesGive) {
  MorvoSprites sprites(files());
  sprites.setPersona(m_pet.id());
  ASSERT_TRUE(ContentFile::read(m_pet.folder()));
  EXPECT_EQ(sprites.contentRect(), *ContentFile::read(m_pet.folder()));
  EXPECT_EQ(sprites.contentRect(), sprites.measuredContentRect());
}

/// The square is measured on five sets only, and must not cut the others.
TEST_P(PetFilesTest, TheCropSquareCutsNoSet) {
  EXPECT_EQ(ContentFile::read(m_pet.folder()), QRectF(0, 0, 1, 1));
}

TEST_P(PetFilesTest, TheIconsTakenAtBuildTimeAreTheOnesTheFramesGive) {
  const auto computed = MenubarFrames(files()).cells(m_pet.id());
  // Every n/12-th frame, from 12 to 23 of them.
  ASSERT_GE(computed.size(), 12U);
  const QDir folder(MenubarFrames::bakedFolder(files(), m_pet.id()));
  EXPECT_EQ(folder.entryList(QDir::Files).size(), static_cast<qsizetype>(computed.size()));
  for (std::size_t index = 0; index < computed.size(); ++index) {
    const QImage baked(folder.filePath(QStringLiteral("%1.png").arg(index)));
    EXPECT_EQ(baked.convertToFormat(QImage::Format_ARGB32_Premultiplied), computed[index]) << index;
  }
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, PetFilesTest, testing::ValuesIn(BuiltInPet::all()),
                         [](const auto &instance) { return instance.param; });

} // namespace
} // namespace morvo
