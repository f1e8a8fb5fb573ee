#include "base/AtomicFile.h"
#include "support/FailingFileLayer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>

namespace morvo {
namespace {

using test::FailingFileLayer;

class AtomicFileTest : public testing::Test {
protected:
  [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
  [[nodiscard]] QByteArray content(const QString &name) {
    return m_files.read(path(name)).value_or("<unreadable>");
  }
  void put(const QString &name, const QByteArray &text) {
    ASSERT_TRUE(AtomicFile::write(m_files, path(name), text).has_value());
  }
  /// Replaces "f" if it holds `expected`.
  [[nodiscard]] bool replace(const std::optional<QByteArray> &expected, const QByteArray &text) {
    const auto replaced =
        AtomicFile::replaceIfUnchanged(m_files, path(QStringLiteral("f")), expected, text);
    EXPECT_TRUE(replaced.has_value());
    return replaced.value_or(false);
  }
  [[nodiscard]] QStringList entries() const {
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

  QTemporaryDir m_folder;
  SystemFileLayer m_files;
};

TEST_F(AtomicFileTest, CreatesTheFileAndItsFolders) {
  put(QStringLiteral("a/b/文件.json"), "inhalt");
  EXPECT_EQ(content(QStringLiteral("a/b/文件.json")), "inhalt");
}

TEST_F(AtomicFileTest, KeepsTheModeOfAnExistingFile) {
  put(QStringLiteral("f"), "old");
  ASSERT_EQ(::chmod(QFile::encodeName(path(QStringLiteral("f"))).constData(), 0640), 0);
  put(QStringLiteral("f"), "new");
  EXPECT_EQ(m_files.status(path(QStringLiteral("f")))->mode, 0640U);
  EXPECT_EQ(content(QStringLiteral("f")), "new");
}

TEST_F(AtomicFileTest, ForcesTheModeWhenAsked) {
  put(QStringLiteral("f"), "old");
  ASSERT_TRUE(AtomicFile::write(m_files, path(QStringLiteral("f")), "new",
                                {.mode = 0755, .forceMode = true})
                  .has_value());
  EXPECT_EQ(m_files.status(path(QStringLiteral("f")))->mode, 0755U);
}

TEST_F(AtomicFileTest, ASymbolicLinkStaysALinkToTheChangedFile) {
  put(QStringLiteral("real/target"), "old");
  ASSERT_TRUE(QFile::link(QStringLiteral("real/target"), path(QStringLiteral("link"))));
  put(QStringLiteral("link"), "new");
  EXPECT_TRUE(m_files.status(path(QStringLiteral("link")))->isSymbolicLink);
  EXPECT_EQ(content(QStringLiteral("real/target")), "new");
}

TEST_F(AtomicFileTest, ALinkToNothingCreatesItsTarget) {
  ASSERT_TRUE(QFile::link(QStringLiteral("later"), path(QStringLiteral("link"))));
  put(QStringLiteral("link"), "new");
  EXPECT_EQ(content(QStringLiteral("later")), "new");
}

TEST_F(AtomicFileTest, ALoopOfLinksIsAnError) {
  ASSERT_TRUE(QFile::link(QStringLiteral("b"), path(QStringLiteral("a"))));
  ASSERT_TRUE(QFile::link(QStringLiteral("a"), path(QStringLiteral("b"))));
  const auto written = AtomicFile::write(m_files, path(QStringLiteral("a")), "new");
  ASSERT_FALSE(written.has_value());
  EXPECT_EQ(written.error().code, ELOOP);
}

/// Fails each call of a write in turn and looks at what is left.
void sweep(QTemporaryDir &folder, FailingFileLayer::Fault fault, bool strayAllowed) {
  SystemFileLayer real;
  FailingFileLayer failing;
  // What people keep under version control: a link to a file that is theirs alone.
  const QString target = folder.filePath(QStringLiteral("f"));
  const QString linked = folder.filePath(QStringLiteral("real"));
  ASSERT_TRUE(QFile::link(QStringLiteral("real"), target));
  ASSERT_TRUE(AtomicFile::write(real, target, "old", {.mode = 0600}).has_value());
  int call = 1;
  for (;; ++call) {
    ASSERT_TRUE(AtomicFile::write(real, target, "old").has_value());
    failing.failAt(call, fault, ENOSPC);
    const bool written = AtomicFile::write(failing, target, "the new content").has_value();
    const QByteArray seen = *real.read(target);
    EXPECT_TRUE(real.status(target)->isSymbolicLink) << "call " << call;
    EXPECT_EQ(real.status(linked)->mode, 0600U) << "call " << call;
    if (failing.calls() < call) {
      EXPECT_TRUE(written);
      EXPECT_EQ(seen, "the new content");
      break;
    }
    EXPECT_TRUE(seen == "old" || seen == "the new content") << "call " << call;
    if (written) {
      EXPECT_EQ(seen, "the new content") << "call " << call;
    }
    const auto left =
        QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    if (!strayAllowed) {
      EXPECT_EQ(left, (QStringList{QStringLiteral("f"), QStringLiteral("real")}))
          << "call " << call;
    }
  }
  // Below this the sweep has not seen create, write, chmod, fsync, close and rename fail.
  EXPECT_GT(call, 6);
}

TEST_F(AtomicFileTest, AFailureOfAnyCallLeavesTheOldFileOrTheNewOne) {
  sweep(m_folder, FailingFileLayer::Fault::error, false);
}

TEST_F(AtomicFileTest, ATornWriteLeavesTheOldFile) {
  sweep(m_folder, FailingFileLayer::Fault::tornWrite, false);
}

TEST_F(AtomicFileTest, ACrashAtAnyCallLeavesTheOldFileOrTheNewOne) {
  sweep(m_folder, FailingFileLayer::Fault::crash, true);
}

TEST_F(AtomicFileTest, APathThatCannotBeLookedAtIsAnErrorAndNotAMissingFile) {
  put(QStringLiteral("f"), "old");
  FailingFileLayer failing;
  for (int call = 1; call <= 2; ++call) {
    failing.failAt(call, FailingFileLayer::Fault::error, EACCES);
    const auto written = AtomicFile::write(failing, path(QStringLiteral("f")), "new");
    ASSERT_FALSE(written.has_value()) << "call " << call;
    EXPECT_EQ(written.error().code, EACCES);
    EXPECT_EQ(content(QStringLiteral("f")), "old");
  }
}

TEST_F(AtomicFileTest, ReplacesAFileThatStillHoldsWhatIsExpected) {
  put(QStringLiteral("f"), "old");
  EXPECT_EQ(replace("old", "new"), true);
  EXPECT_EQ(content(QStringLiteral("f")), "new");
}

TEST_F(AtomicFileTest, LeavesAFileAloneThatChangedMeanwhile) {
  put(QStringLiteral("f"), "other");
  EXPECT_EQ(replace("old", "new"), false);
  EXPECT_EQ(replace(std::nullopt, "new"), false);
  EXPECT_EQ(content(QStringLiteral("f")), "other");
  EXPECT_EQ(entries(), QStringList{QStringLiteral("f")});
}

TEST_F(AtomicFileTest, AnExpectedAbsenceIsHeldAgainstTheFolder) {
  EXPECT_EQ(replace("old", "new"), false);
  EXPECT_EQ(entries(), QStringList());
  EXPECT_EQ(replace(std::nullopt, "new"), true);
  EXPECT_EQ(content(QStringLiteral("f")), "new");
}

TEST_F(AtomicFileTest, AStrayTemporaryFileIsNoObstacle) {
  put(QStringLiteral("f"), "old");
  for (int i = 0; i < 5; ++i) {
    QFile stray(path(QStringLiteral(".f.%1-%2.tmp").arg(::getpid()).arg(i)));
    ASSERT_TRUE(stray.open(QIODevice::WriteOnly));
  }
  put(QStringLiteral("f"), "new");
  EXPECT_EQ(content(QStringLiteral("f")), "new");
}

} // namespace
} // namespace morvo
