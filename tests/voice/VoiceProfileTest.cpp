#include "voice/VoiceProfileStore.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "base/SystemFileLayer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(VoiceProfileTest, EveryKeyIsOptionalAndAnUnknownProviderReadsAsTheDefault) {
  EXPECT_EQ(voiceProfileFromJson({}), VoiceProfile{});
  EXPECT_EQ(voiceProfileFromJson({{QStringLiteral("provider"), QStringLiteral("parrot")},
                                  {QStringLiteral("rate"), QStringLiteral("fast")}}),
            VoiceProfile{});
}

TEST(VoiceProfileTest, ARoundTripKeepsEveryProvider) {
  for (const auto provider : {VoiceProvider::system, VoiceProvider::qwenTTS, VoiceProvider::doubao,
                              VoiceProvider::cosyClone}) {
    VoiceProfile profile;
    profile.provider = provider;
    profile.voiceId = QStringLiteral("v");
    profile.clonedVoiceId = QStringLiteral("c");
    profile.clonedLabel = QStringLiteral("我的声音");
    profile.rate = 0.7;
    EXPECT_EQ(voiceProfileFromJson(toJson(profile)), profile);
  }
}

TEST(VoiceProfileStoreTest, TheFirstReadableFileWinsAndNoneGivesTheDefault) {
  const QTemporaryDir folder;
  SystemFileLayer layer;
  const QString own = folder.filePath(QStringLiteral("own.json"));
  const QString builtIn = folder.filePath(QStringLiteral("built-in.json"));
  EXPECT_EQ(VoiceProfileStore::load({own, builtIn}), VoiceProfile{});
  ASSERT_TRUE(AtomicFile::write(layer, builtIn, R"({"aiVoice":"Ethan"})").has_value());
  EXPECT_EQ(VoiceProfileStore::load({own, builtIn}).aiVoice, QStringLiteral("Ethan"));
  ASSERT_TRUE(AtomicFile::write(layer, own, R"({"aiVoice":"Jada"})").has_value());
  EXPECT_EQ(VoiceProfileStore::load({own, builtIn}).aiVoice, QStringLiteral("Jada"));
  ASSERT_TRUE(AtomicFile::write(layer, own, "torn {").has_value());
  EXPECT_EQ(VoiceProfileStore::load({own, builtIn}).aiVoice, QStringLiteral("Ethan"));
}

} // namespace
} // namespace morvo
