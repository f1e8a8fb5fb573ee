#include "platform/MorvoHome.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"
#include "platform/L10n.h"
#include "platform/linux/HomeFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

TEST_F(MorvoHomeTest, ClosesAFolderThatIsThereToAllButTheUser) {
  const QString folder = MorvoHome::directory(m_home);
  ASSERT_TRUE(QDir().mkpath(folder));
  for (const mode_t mode : {mode_t{0777}, mode_t{0750}, mode_t{0711}, mode_t{0700}}) {
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), mode), 0);
    MorvoHome::ensure(m_home);
    EXPECT_EQ(m_files.status(folder)->mode, 0700U) << mode;
  }
}

TEST_F(MorvoHomeTest, ClosesTheDecisionsThatAreThereToAllButTheUser) {
  const QString folder = MorvoHome::decisions(m_home);
  ASSERT_TRUE(QDir().mkpath(folder));
  ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
  MorvoHome::ensure(m_home);
  EXPECT_EQ(m_files.status(folder)->mode, 0700U);
}

TEST_F(MorvoHomeTest, AFileInTheFoldersPlaceKeepsItsMode) {
  ASSERT_TRUE(AtomicFile::write(m_files, MorvoHome::directory(m_home), "x", {.mode = 0644}));
  MorvoHome::ensure(m_home);
  EXPECT_EQ(m_files.status(MorvoHome::directory(m_home))->mode, 0644U);
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

/// A process of its own whose environment names these homes.
class HomeOfAProcessTest : public testing::Test {
protected:
  /// What the process finds, after it has set its home up there if told to.
  [[nodiscard]] QString found(bool setsUp = false) const {
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
    const pid_t process = ::fork();
    if (process == 0) {
      qputenv("HOME", QFile::encodeName(m_home.path()));
      if (m_namesHome) {
        qputenv("MORVO_HOME", QFile::encodeName(m_named.path()));
      } else {
        qunsetenv("MORVO_HOME");
      }
      const HomeFolder home = HomeFolders::find(Environment::ofProcess());
      if (setsUp) {
        MorvoHome::ensure(home);
      }
      const QByteArray path = QFile::encodeName(home.path);
      ::_exit(::write(pipe[1], path.constData(), static_cast<std::size_t>(path.size())) ==
                      path.size()
                  ? 0
                  : 1);
    }
    ::close(pipe[1]);
    QFile answer;
    EXPECT_TRUE(answer.open(pipe[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    const QByteArray path = answer.readAll();
    int status = -1;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
    return QFile::decodeName(path);
  }

  bool m_namesHome = false;
  QTemporaryDir m_home;
  QTemporaryDir m_named;
};

TEST_F(HomeOfAProcessTest, ItsVariableHomeIsNeverUsed) {
  const passwd *entry = ::getpwuid(::getuid());
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(found(), QDir::cleanPath(QFile::decodeName(entry->pw_dir)));
}

TEST_F(HomeOfAProcessTest, AHomeOfItsOwnTakesAllFilesAndTheOtherNone) {
  m_namesHome = true;
  EXPECT_EQ(found(true), m_named.path());
  EXPECT_TRUE(QFileInfo::exists(m_named.filePath(QStringLiteral(".morvo/inbox.jsonl"))));
  EXPECT_TRUE(QDir(m_home.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
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
