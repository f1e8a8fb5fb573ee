#include "usage/LogFile.h"

#include "usage/LogTree.h"

#include <array>
#include <atomic>
#include <dirent.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

/// Whether folders tell their entries' names alone, as on some file systems.
std::atomic<bool> kindsAreUntold = false;

} // namespace

/// Stands before that of the C library.
extern "C" dirent *readdir(DIR *folder) {
  static const auto real = reinterpret_cast<dirent *(*)(DIR *)>(::dlsym(RTLD_NEXT, "readdir"));
  dirent *const entry = real(folder);
  if (entry != nullptr && kindsAreUntold) {
    entry->d_type = DT_UNKNOWN;
  }
  return entry;
}

namespace morvo {
namespace {

using testing::UnorderedElementsAre;

/// The parameter tells whether the kinds are untold.
class LogFileTest : public testing::TestWithParam<bool> {
protected:
  ~LogFileTest() override { kindsAreUntold = false; }

  [[nodiscard]] std::vector<QString> found() const {
    static constexpr std::array<std::string_view, 1> extensions{"jsonl"};
    kindsAreUntold = GetParam();
    const auto logs =
        LogFile::changedSince(QFile::encodeName(m_tree.path(QStringLiteral("logs"))).toStdString(),
                              extensions, WallTime::min(), {});
    kindsAreUntold = false;
    std::vector<QString> names;
    const QString root = m_tree.path(QStringLiteral("logs/"));
    for (const LogFile &log : logs) {
      names.push_back(QFile::decodeName(QByteArray::fromStdString(log.path)).mid(root.size()));
    }
    return names;
  }
  [[nodiscard]] QByteArray native(const QString &name) const {
    return QFile::encodeName(m_tree.path(QStringLiteral("logs/") + name));
  }

  test::LogTree m_tree;
};

TEST_P(LogFileTest, RegularFilesWithTheExtensionAreLogsAtAnyDepth) {
  for (const QString &name :
       {QStringLiteral("a.jsonl"), QStringLiteral("folder.jsonl/b.jsonl"),
        QStringLiteral("x/y/z/c.jsonl"), QStringLiteral("x/no.json"), QStringLiteral("jsonl")}) {
    m_tree.write(QStringLiteral("logs/") + name, "x");
  }
  EXPECT_THAT(found(), UnorderedElementsAre(QStringLiteral("a.jsonl"),
                                            QStringLiteral("folder.jsonl/b.jsonl"),
                                            QStringLiteral("x/y/z/c.jsonl")));
}

TEST_P(LogFileTest, LinksAndPipesAreNoLogs) {
  m_tree.write(QStringLiteral("logs/a.jsonl"), "x");
  m_tree.write(QStringLiteral("elsewhere/b.jsonl"), "x");
  const QByteArray elsewhere = QFile::encodeName(m_tree.path(QStringLiteral("elsewhere")));
  ASSERT_EQ(::symlink(elsewhere.constData(), native(QStringLiteral("folder")).constData()), 0);
  ASSERT_EQ(::symlink((elsewhere + "/b.jsonl").constData(),
                      native(QStringLiteral("link.jsonl")).constData()),
            0);
  ASSERT_EQ(::mkfifo(native(QStringLiteral("pipe.jsonl")).constData(), 0600), 0);
  EXPECT_THAT(found(), UnorderedElementsAre(QStringLiteral("a.jsonl")));
}

INSTANTIATE_TEST_SUITE_P(Kinds, LogFileTest, testing::Bool());

} // namespace
} // namespace morvo
