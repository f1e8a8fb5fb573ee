#include "platform/MorvoHome.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"
#include "platform/L10n.h"
#include "platform/linux/HomeFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace morvo {
namespace {

class MorvoHomeTest : public testing::Test {
protected:
  QTemporaryDir m_folder;
  HomeFolder m_home{m_folder.filePath(QStringLiteral("deep/home"))};
  SystemFileLayer m_files;
};

TEST_F(MorvoHomeTest, MakesTheFolderForTheUserAloneWithAnEmptyInbox) {
  MorvoHome::ensure(m_home);
  EXPECT_EQ(m_files.status(MorvoHome::directory(m_home))->mode, 0700U);
  EXPECT_EQ(m_files.status(MorvoHome::inbox(m_home))->mode, 0600U);
  EXPECT_EQ(m_files.status(MorvoHome::inbox(m_home))->size, 0U);
}

TEST_F(MorvoHomeTest, KeepsAnInboxThatIsThere) {
  ASSERT_TRUE(AtomicFile::write(m_files, MorvoHome::inbox(m_home), "{}\n"));
  MorvoHome::ensure(m_home);
  EXPECT_EQ(*m_files.read(MorvoHome::inbox(m_home)), "{}\n");
}

TEST_F(MorvoHomeTest, IgnoresThatTheFolderCannotBeMade) {
  ASSERT_TRUE(AtomicFile::write(m_files, m_home.path, "a file in the way"));
  MorvoHome::ensure(m_home);
  EXPECT_EQ(*m_files.read(m_home.path), "a file in the way");
}

TEST(HomeFoldersTest, TheVariableNamesTheHomeMadeAbsolute) {
  const auto find = [](const QString &value) {
    return HomeFolders::find(Environment{{{QStringLiteral("MORVO_HOME"), value}}}).path;
  };
  EXPECT_EQ(find(QStringLiteral("/a/b/../c/")), QStringLiteral("/a/c"));
  EXPECT_EQ(find(QStringLiteral("below")),
            QDir::current().absoluteFilePath(QStringLiteral("below")));
}

TEST(HomeFoldersTest, HomeIsNeverLookedAt) {
  const passwd *entry = ::getpwuid(::getuid());
  ASSERT_NE(entry, nullptr);
  const Environment environment{{{QStringLiteral("HOME"), QStringLiteral("/elsewhere")},
                                 {QStringLiteral("MORVO_HOME"), QString()}}};
  EXPECT_EQ(HomeFolders::find(environment).path, QDir::cleanPath(QFile::decodeName(entry->pw_dir)));
}

TEST(L10nTest, TheFirstPreferredLanguageDecides) {
  EXPECT_TRUE(L10n::isChinese({QStringLiteral("zh-Hans-CN"), QStringLiteral("en")}));
  EXPECT_TRUE(L10n::isChinese({QStringLiteral("zh")}));
  EXPECT_FALSE(L10n::isChinese({QStringLiteral("en"), QStringLiteral("zh-CN")}));
  EXPECT_FALSE(L10n::isChinese({}));
}

TEST(L10nTest, AnIgnoredBuildIsSaidInBothLanguages) {
  EXPECT_EQ(L10n::Update::ignored(42, true),
            QStringLiteral("已忽略 build 42。可随时再点检查更新。"));
  EXPECT_EQ(L10n::Update::ignored(42, false),
            QStringLiteral("Ignored build 42. You can check again anytime."));
}

} // namespace
} // namespace morvo
