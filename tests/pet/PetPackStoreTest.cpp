#include "pet/PetPackStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace morvo {
namespace {

const QString pet = QStringLiteral("custom-1");

class PetPackStoreTest : public testing::Test {
protected:
  void write(const QString &folder, const QByteArray &text) {
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("/manifest.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(text), text.size());
  }

  QTemporaryDir m_folder;
  PetFiles m_files{.home = {m_folder.filePath(QStringLiteral("home"))},
                   .resources = m_folder.filePath(QStringLiteral("resources"))};
};

TEST_F(PetPackStoreTest, theUsersPackComesBeforeTheBuiltInOne) {
  write(m_files.resourceDirectory(pet), R"({"id":"built-in"})");
  EXPECT_EQ(PetPackStore::load(m_files, pet)->id, QStringLiteral("built-in"));
  write(m_files.userDirectory(pet), R"({"id":"user"})");
  EXPECT_EQ(PetPackStore::load(m_files, pet)->id, QStringLiteral("user"));
}

TEST_F(PetPackStoreTest, aUsersPackThatCannotBeDecodedFallsThrough) {
  write(m_files.resourceDirectory(pet), R"({"id":"built-in"})");
  write(m_files.userDirectory(pet), "[]");
  EXPECT_EQ(PetPackStore::load(m_files, pet)->id, QStringLiteral("built-in"));
}

TEST_F(PetPackStoreTest, noFileIsNoPack) { EXPECT_FALSE(PetPackStore::load(m_files, pet)); }

TEST_F(PetPackStoreTest, aSavedPackIsReadBack) {
  PetPack pack;
  pack.id = pet;
  pack.loops = {{QStringLiteral("calm"), QStringLiteral("float")}};
  PetPackStore::save(m_files, pack, pet);
  EXPECT_EQ(PetPackStore::load(m_files, pet), pack);
  pack.displayName = QStringLiteral("二");
  PetPackStore::save(m_files, pack, pet);
  EXPECT_EQ(PetPackStore::load(m_files, pet), pack);
  EXPECT_EQ(QDir(m_files.userDirectory(pet)).entryList(QDir::Files | QDir::Hidden),
            QStringList{QStringLiteral("manifest.json")});
}

TEST_F(PetPackStoreTest, aSaveThatFailsIsSilent) {
  ASSERT_TRUE(QDir().mkpath(m_files.home.path));
  QFile blocker(m_files.home.file(QStringLiteral(".morvo")));
  ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
  PetPackStore::save(m_files, PetPack(), pet);
  EXPECT_FALSE(PetPackStore::load(m_files, pet));
}

TEST_F(PetPackStoreTest, anIdThatLeadsElsewhereIsRefused) {
  write(m_folder.filePath(QStringLiteral("home/.morvo/outside")), R"({"id":"outside"})");
  const QString crooked = QStringLiteral("../outside");
  EXPECT_FALSE(PetPackStore::load(m_files, crooked));
  PetPackStore::save(m_files, PetPack(), QStringLiteral("../written"));
  EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("home/.morvo/written"))));
}

} // namespace
} // namespace morvo
