#include "monitor/SessionLogs.h"

#include "monitor/SessionHome.h"

#include <filesystem>
#include <unistd.h>

namespace morvo {
namespace {

using namespace std::chrono_literals;

class SessionLogsTest : public testing::Test {
protected:
  void put(const QString &relative, std::chrono::milliseconds age = 0ms,
           const QByteArray &text = "{}\n") {
    m_home.put(relative, text, age);
  }
  [[nodiscard]] QStringList recent() const {
    QStringList names;
    const QString prefix = m_home.path({});
    for (const auto &file : SessionLogs::recentFiles(m_home.path({}), m_home.now())) {
      names << QString::fromStdString(file.path).sliced(prefix.size());
    }
    return names;
  }
  [[nodiscard]] QByteArray tail(const QString &relative, qsizetype bytes) const {
    return SessionLogs::tail(QFile::encodeName(m_home.path(relative)).toStdString(), bytes);
  }

  test::SessionHome m_home;
};

TEST_F(SessionLogsTest, OnlyRegularFilesWithTheExtensionCount) {
  put(QStringLiteral("a.jsonl"));
  put(QStringLiteral("b.json"));
  put(QStringLiteral("c.JSONL"));
  put(QStringLiteral("d.jsonl.bak"));
  put(QStringLiteral("jsonl"));
  put(QStringLiteral(".jsonl"));
  put(QStringLiteral("folder.jsonl/.hidden.jsonl"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(m_home.path(QStringLiteral("p.jsonl"))).constData(), 0600),
            0);
  EXPECT_EQ(recent(), (QStringList{QStringLiteral("/a.jsonl"),
                                   QStringLiteral("/folder.jsonl/.hidden.jsonl")}));
}

TEST_F(SessionLogsTest, AFileCountsUpToFifteenMinutesAfterItsLastWrite) {
  put(QStringLiteral("a.jsonl"), 900s);
  put(QStringLiteral("b.jsonl"), 900001ms);
  put(QStringLiteral("c.jsonl"), -3600s);
  EXPECT_EQ(recent(), (QStringList{QStringLiteral("/a.jsonl"), QStringLiteral("/c.jsonl")}));
}

TEST_F(SessionLogsTest, ADateBeyondWhatNanosecondsCanCountIsLaterThanNow) {
  put(QStringLiteral("a.jsonl"), -24h * 365 * 400);
  EXPECT_EQ(recent(), QStringList{QStringLiteral("/a.jsonl")});
}

TEST_F(SessionLogsTest, EachFileComesWithItsDate) {
  put(QStringLiteral("a.jsonl"), 1234ms);
  const auto found = SessionLogs::recentFiles(m_home.path({}), m_home.now());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().identity.modifiedAt(), m_home.now() - 1234ms);
}

TEST_F(SessionLogsTest, CollectingStopsAtEightyFilesAndOldOnesDoNotCount) {
  for (int number = 100; number < 200; ++number) {
    put(QStringLiteral("x/%1.jsonl").arg(number), number % 2 == 0 ? 1h : 0h);
    put(QStringLiteral("y/%1.jsonl").arg(number));
  }
  const QStringList found = recent();
  EXPECT_EQ(found.size(), 80);
  EXPECT_EQ(found.first(), QStringLiteral("/x/101.jsonl"));
  EXPECT_EQ(found.last(), QStringLiteral("/y/129.jsonl"));
}

TEST_F(SessionLogsTest, LinksBelowTheRootAreNotFollowedSoNoLoopCatchesTheScan) {
  put(QStringLiteral("real/a.jsonl"));
  ASSERT_TRUE(QFile::link(m_home.path({}), m_home.path(QStringLiteral("real/loop"))));
  ASSERT_TRUE(QFile::link(QStringLiteral("."), m_home.path(QStringLiteral("real/self"))));
  ASSERT_TRUE(QFile::link(m_home.path(QStringLiteral("real/a.jsonl")),
                          m_home.path(QStringLiteral("real/b.jsonl"))));
  EXPECT_EQ(recent(), QStringList{QStringLiteral("/real/a.jsonl")});
}

TEST_F(SessionLogsTest, TheRootItselfMayBeALink) {
  put(QStringLiteral("real/a.jsonl"));
  ASSERT_TRUE(
      QFile::link(m_home.path(QStringLiteral("real")), m_home.path(QStringLiteral("root"))));
  EXPECT_EQ(SessionLogs::recentFiles(m_home.path(QStringLiteral("root")), m_home.now()).size(), 1U);
}

TEST_F(SessionLogsTest, AMissingRootOrAFileInItsPlaceGivesNothing) {
  put(QStringLiteral("file.jsonl"));
  EXPECT_TRUE(SessionLogs::recentFiles(m_home.path(QStringLiteral("no")), m_home.now()).empty());
  EXPECT_TRUE(
      SessionLogs::recentFiles(m_home.path(QStringLiteral("file.jsonl")), m_home.now()).empty());
}

TEST_F(SessionLogsTest, AFolderThatCannotBeOpenedIsLeftOut) {
  put(QStringLiteral("closed/a.jsonl"));
  put(QStringLiteral("open/b.jsonl"));
  const QByteArray closed = QFile::encodeName(m_home.path(QStringLiteral("closed")));
  ASSERT_EQ(::chmod(closed.constData(), 0000), 0);
  const QStringList found = recent();
  ASSERT_EQ(::chmod(closed.constData(), 0700), 0);
  EXPECT_TRUE(found.contains(QStringLiteral("/open/b.jsonl")));
  EXPECT_EQ(found.contains(QStringLiteral("/closed/a.jsonl")), ::geteuid() == 0);
}

TEST_F(SessionLogsTest, AFolderTooDeepForAPathEndsTheWayDownAndNothingElse) {
  // Made step by step, since no path reaches so deep.
  const QString before = QDir::currentPath();
  const QString name(200, u'd');
  ASSERT_TRUE(QDir::setCurrent(m_home.path({})));
  for (int level = 0; level < 30; ++level) {
    ASSERT_EQ(::mkdir(QFile::encodeName(name).constData(), 0700), 0);
    ASSERT_EQ(::chdir(QFile::encodeName(name).constData()), 0);
  }
  ASSERT_TRUE(QDir::setCurrent(before));
  put(QStringLiteral("z/a.jsonl"));
  EXPECT_EQ(recent(), QStringList{QStringLiteral("/z/a.jsonl")});
  EXPECT_GT(std::filesystem::remove_all(m_home.path(name).toStdString()), 29U);
}

TEST_F(SessionLogsTest, ARequestedStopEndsTheWalk) {
  put(QStringLiteral("a.jsonl"));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_TRUE(SessionLogs::recentFiles(m_home.path({}), m_home.now(), stop.get_token()).empty());
}

TEST_F(SessionLogsTest, TheTailOfAShortFileIsAllOfIt) {
  put(QStringLiteral("a"), 0ms, "0123456789");
  EXPECT_EQ(tail(QStringLiteral("a"), 10), "0123456789");
  EXPECT_EQ(tail(QStringLiteral("a"), 11), "0123456789");
  EXPECT_EQ(tail(QStringLiteral("a"), 4), "6789");
  put(QStringLiteral("empty"), 0ms, {});
  EXPECT_EQ(tail(QStringLiteral("empty"), 4), "");
}

TEST_F(SessionLogsTest, TheTailOfAHugeFileCostsNoMoreThanItsBytes) {
  put(QStringLiteral("huge"), 0ms, {});
  const QByteArray path = QFile::encodeName(m_home.path(QStringLiteral("huge")));
  constexpr off_t size = off_t{8} << 30U;
  ASSERT_EQ(::truncate(path.constData(), size), 0);
  const int file = ::open(path.constData(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(::pwrite(file, "end", 3, size - 3), 3);
  ::close(file);
  EXPECT_EQ(tail(QStringLiteral("huge"), 5), QByteArray("\0\0end", 5));
}

TEST_F(SessionLogsTest, WhatIsNoRegularFileHasNoTail) {
  put(QStringLiteral("real"), 0ms, "text");
  ASSERT_TRUE(QFile::link(m_home.path(QStringLiteral("real")), m_home.path(QStringLiteral("ln"))));
  ASSERT_EQ(::mkfifo(QFile::encodeName(m_home.path(QStringLiteral("p"))).constData(), 0600), 0);
  EXPECT_EQ(tail(QStringLiteral("ln"), 4), "");
  EXPECT_EQ(tail(QStringLiteral("p"), 4), "");
  EXPECT_EQ(tail(QStringLiteral("missing"), 4), "");
  EXPECT_EQ(tail({}, 4), "");
}

} // namespace
} // namespace morvo
