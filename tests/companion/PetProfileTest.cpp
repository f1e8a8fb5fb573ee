#include "companion/PetProfileStore.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(PetProfileTest, MissingKeysAreEmptyAndAnEmptyProfileKnowsIt) {
  const auto profile = petProfileFromJson({{QStringLiteral("tone"), QStringLiteral("温柔")}});
  EXPECT_EQ(profile.tone, QStringLiteral("温柔"));
  EXPECT_TRUE(profile.extraNotes.isEmpty());
  EXPECT_FALSE(profile.isEmpty());
  EXPECT_TRUE(PetProfile{}.isEmpty());
}

TEST(PetProfileTest, ARoundTripKeepsEverything) {
  const PetProfile profile{.tone = QStringLiteral("a"),
                           .userTitle = QStringLiteral("b"),
                           .selfName = QStringLiteral("c"),
                           .relationship = QStringLiteral("d"),
                           .proactivity = QStringLiteral("e"),
                           .extraNotes = {QStringLiteral("f"), QStringLiteral("g")}};
  EXPECT_EQ(petProfileFromJson(toJson(profile)), profile);
}

TEST(PetProfileStoreTest, AMissingOrUnreadableFileIsTheEmptyProfile) {
  const QTemporaryDir folder;
  SystemFileLayer layer;
  const PetFiles files{.home = {folder.path()}, .resources = {}};
  const QString id = QStringLiteral("morvo");
  EXPECT_TRUE(PetProfileStore::load(files, id).isEmpty());
  const QString path = files.userDirectory(id) + QStringLiteral("/profile.json");
  ASSERT_TRUE(AtomicFile::write(layer, path, "[]").has_value());
  EXPECT_TRUE(PetProfileStore::load(files, id).isEmpty());
  ASSERT_TRUE(AtomicFile::write(layer, path, R"({"selfName":"沃沃"})").has_value());
  EXPECT_EQ(PetProfileStore::load(files, id).selfName, QStringLiteral("沃沃"));
}

} // namespace
} // namespace morvo
