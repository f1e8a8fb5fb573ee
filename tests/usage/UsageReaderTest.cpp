#include "usage/UsageReader.h"
#include "support/ManualClock.h"
#include "usage/ClaudeLog.h"
#include "usage/LogLine.h"
#include "usage/LogMemory.h"
#include "usage/LogTree.h"

#include <QFile>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace morvo {
namespace {

using test::billables;
using test::claudeReply;
using test::codexTotals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double week = 168;

class UsageReaderTest : public testing::Test {
protected:
  /// Writes a log that was changed an hour ago.
  void write(const QString &path, const QByteArray &content) {
    m_tree.write(path, content);
    m_tree.setModified(path, m_clock.now() - std::chrono::hours(1));
  }
  void append(const QString &path, const QByteArray &content) {
    m_tree.append(path, content);
    m_tree.setModified(path, m_clock.now());
  }
  /// Adds so many zeros, which take no room on the disk.
  void lengthen(const QString &path, std::size_t bytes) {
    QFile file(m_tree.path(path));
    ASSERT_TRUE(file.resize(file.size() + static_cast<qint64>(bytes)));
    m_tree.setModified(path, m_clock.now());
  }
  [[nodiscard]] std::vector<std::int64_t> claude(double hours = week) {
    return billables(m_reader.claudeEvents(hours));
  }
  [[nodiscard]] std::vector<std::int64_t> codex(double hours = week) {
    return billables(m_reader.codexEvents(hours));
  }

  const QString m_claudeLog = QStringLiteral(".claude/projects/-home-me/session.jsonl");
  const QString m_codexLog = QStringLiteral(".codex/sessions/2026/03/10/rollout.jsonl");
  test::LogTree m_tree;
  test::ManualClock m_clock;
  UsageReader m_reader{m_tree.home(), m_clock};
};

TEST_F(UsageReaderTest, WithoutFoldersThereIsNothing) {
  EXPECT_THAT(claude(), IsEmpty());
  EXPECT_THAT(codex(), IsEmpty());
}

TEST_F(UsageReaderTest, EveryReplyIsAnEventAndCopiesAreNotMerged) {
  const QByteArray reply = claudeReply(5) + '\n';
  write(m_claudeLog, reply + R"({"type":"user","message":"usage"})" + '\n' + reply);
  EXPECT_THAT(claude(), ElementsAre(5, 5));
}

TEST_F(UsageReaderTest, RepliesBeforeTheCutOffAreSkipped) {
  write(m_claudeLog, claudeReply(1, 0, "2026-03-10T06:59:59Z") + '\n' +
                         claudeReply(2, 0, "2026-03-10T07:00:00Z") + '\n');
  EXPECT_THAT(claude(5), ElementsAre(2));
  // What was left out before is found when more is asked for.
  EXPECT_THAT(claude(6), ElementsAre(1, 2));
  EXPECT_THAT(claude(5), ElementsAre(2));
}

TEST_F(UsageReaderTest, LogsNotChangedSinceTheCutOffAreNotRead) {
  write(m_claudeLog, claudeReply(1) + '\n');
  write(m_codexLog, codexTotals(1) + '\n');
  m_tree.setModified(m_claudeLog, m_clock.now() - std::chrono::hours(5));
  m_tree.setModified(m_codexLog, m_clock.now() - std::chrono::hours(5));
  EXPECT_THAT(claude(5), ElementsAre(1));
  EXPECT_THAT(codex(5), ElementsAre(1));
  m_clock.advance(std::chrono::milliseconds(1));
  EXPECT_THAT(claude(5), IsEmpty());
  EXPECT_THAT(codex(5), IsEmpty());
}

TEST_F(UsageReaderTest, SubAgentsLogsInSubFoldersCount) {
  write(m_claudeLog, claudeReply(1) + '\n');
  write(QStringLiteral(".claude/projects/-home-me/session/subagents/agent.jsonl"),
        claudeReply(2) + '\n');
  EXPECT_THAT(claude(), UnorderedElementsAre(1, 2));
}

TEST_F(UsageReaderTest, OnlyJsonlFilesAreLogs) {
  for (const auto *name : {"a.json", "a.jsonl.bak", "jsonl", ".jsonl", "a.JSONL"}) {
    write(QStringLiteral(".claude/projects/p/") + QString::fromLatin1(name), claudeReply(1) + '\n');
  }
  write(QStringLiteral(".claude/projects/p/.hidden.jsonl"), claudeReply(2) + '\n');
  EXPECT_THAT(claude(), ElementsAre(2));
}

TEST_F(UsageReaderTest, SymbolicLinksAreNotFollowed) {
  write(m_claudeLog, claudeReply(1) + '\n');
  const QByteArray folder = QFile::encodeName(m_tree.path(QStringLiteral(".claude/projects/")));
  ASSERT_EQ(::symlink(folder.constData(), (folder + "loop").constData()), 0);
  ASSERT_EQ(::symlink((folder + "-home-me/session.jsonl").constData(),
                      (folder + "link.jsonl").constData()),
            0);
  EXPECT_THAT(claude(), ElementsAre(1));
}

TEST_F(UsageReaderTest, TheFolderItselfMayBeALink) {
  write(QStringLiteral("elsewhere/p/a.jsonl"), claudeReply(1) + '\n');
  ASSERT_TRUE(QDir().mkpath(m_tree.path(QStringLiteral(".claude"))));
  ASSERT_TRUE(QFile::link(m_tree.path(QStringLiteral("elsewhere")),
                          m_tree.path(QStringLiteral(".claude/projects"))));
  EXPECT_THAT(claude(), ElementsAre(1));
}

TEST_F(UsageReaderTest, APipeWithALogsNameIsNotWaitedFor) {
  write(m_claudeLog, claudeReply(1) + '\n');
  const QByteArray pipe =
      QFile::encodeName(m_tree.path(QStringLiteral(".claude/projects/pipe.jsonl")));
  ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
  EXPECT_THAT(claude(), ElementsAre(1));
}

TEST_F(UsageReaderTest, WhatIsAppendedIsAdded) {
  write(m_claudeLog, claudeReply(1) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1));
  append(m_claudeLog, claudeReply(2) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1, 2));
}

TEST_F(UsageReaderTest, ALineWrittenInTwoStepsCountsOnce) {
  const QByteArray reply = claudeReply(2) + '\n';
  write(m_claudeLog, claudeReply(1) + '\n' + reply.left(100));
  EXPECT_THAT(claude(), ElementsAre(1));
  append(m_claudeLog, reply.sliced(100).chopped(1));
  EXPECT_THAT(claude(), ElementsAre(1, 2));
  append(m_claudeLog, "\n");
  EXPECT_THAT(claude(), ElementsAre(1, 2));
}

TEST_F(UsageReaderTest, ALogThatBecameShorterIsReadAnew) {
  const QByteArray reply = claudeReply(1) + '\n';
  write(m_claudeLog, reply + claudeReply(2) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1, 2));
  write(m_claudeLog, reply);
  EXPECT_THAT(claude(), ElementsAre(1));
}

TEST_F(UsageReaderTest, AnotherLogInItsPlaceIsReadWhole) {
  write(m_claudeLog, claudeReply(1) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1));
  // The same file, rewritten and longer.
  m_tree.write(m_claudeLog, claudeReply(3) + '\n' + claudeReply(4) + '\n');
  m_tree.setModified(m_claudeLog, m_clock.now());
  EXPECT_THAT(claude(), ElementsAre(3, 4));
}

TEST_F(UsageReaderTest, AChangeThatKeepsSizeAndTimeIsSeen) {
  write(m_claudeLog, claudeReply(1) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1));
  m_tree.rewrite(m_claudeLog, claudeReply(2) + '\n', m_clock.now() - std::chrono::hours(1));
  EXPECT_THAT(claude(), ElementsAre(2));
}

TEST_F(UsageReaderTest, ARemovedLogIsForgotten) {
  write(m_claudeLog, claudeReply(1) + '\n');
  EXPECT_THAT(claude(), ElementsAre(1));
  QFile::remove(m_tree.path(m_claudeLog));
  EXPECT_THAT(claude(), IsEmpty());
}

TEST_F(UsageReaderTest, ALogWithTwoNamesCountsTwice) {
  write(m_claudeLog, claudeReply(1) + '\n');
  ASSERT_EQ(
      ::link(
          QFile::encodeName(m_tree.path(m_claudeLog)).constData(),
          QFile::encodeName(m_tree.path(QStringLiteral(".claude/projects/b.jsonl"))).constData()),
      0);
  EXPECT_THAT(claude(), ElementsAre(1, 1));
}

TEST_F(UsageReaderTest, AReplyOf64MegabytesCounts) {
  QByteArray reply = claudeReply(2);
  const QByteArray text = "\"text\":\"";
  ASSERT_TRUE(reply.contains(text));
  const QByteArray filler(static_cast<qsizetype>(LogLine::longest) - reply.size(), 'x');
  reply.insert(reply.indexOf(text) + text.size(), filler);
  write(m_claudeLog, claudeReply(1) + '\n' + reply + '\n' + claudeReply(3));
  EXPECT_THAT(claude(), ElementsAre(1, 2, 3));
}

TEST_F(UsageReaderTest, ALineThatIsTooLongHidesNoOther) {
  write(m_claudeLog, claudeReply(1) + '\n');
  lengthen(m_claudeLog, LogLine::longest + 1);
  EXPECT_THAT(claude(), ElementsAre(1));
  lengthen(m_claudeLog, 5);
  append(m_claudeLog, claudeReply(2));
  EXPECT_THAT(claude(), ElementsAre(1));
  append(m_claudeLog, '\n' + claudeReply(3));
  EXPECT_THAT(claude(), ElementsAre(1, 3));
}

TEST_F(UsageReaderTest, ManyLargeLogsAreReadByTwoThreads) {
  // Reading much less would not call for the second thread.
  const QByteArray filler(200000, ' ');
  std::vector<std::int64_t> expected;
  for (int i = 0; i < 40; ++i) {
    write(QStringLiteral(".claude/projects/p/%1.jsonl").arg(i), filler + claudeReply(i) + '\n');
    expected.push_back(i);
  }
  auto counts = claude();
  std::ranges::sort(counts);
  EXPECT_EQ(counts, expected);
}

TEST_F(UsageReaderTest, WhatWasStoppedIsReadTheNextTime) {
  write(m_claudeLog, claudeReply(1) + '\n');
  write(m_codexLog, codexTotals(5) + '\n');
  std::stop_source stop;
  stop.request_stop();
  (void)m_reader.claudeEvents(week, stop.get_token());
  (void)m_reader.codexEvents(week, stop.get_token());
  EXPECT_THAT(claude(), ElementsAre(1));
  EXPECT_THAT(codex(), ElementsAre(5));
}

TEST_F(UsageReaderTest, TheLastTotalsOfASessionCount) {
  write(m_codexLog, codexTotals(100, 10) + '\n' + codexTotals(300, 50) + "\n{}\n");
  const auto events = m_reader.codexEvents(week);
  ASSERT_EQ(events.size(), 1);
  EXPECT_EQ(events[0].ts, m_clock.now() - std::chrono::hours(1));
  EXPECT_EQ(events[0].billable, 250);
  EXPECT_EQ(events[0].cacheRead, 50);
  EXPECT_DOUBLE_EQ(events[0].cost, (125 * 1.25 + 125 * 10) / 1e6);
  EXPECT_FALSE(events[0].burnable);
}

TEST_F(UsageReaderTest, ASessionWithMoreCachedThanUsedIsAnEventOfNothing) {
  write(m_codexLog, codexTotals(100, 150) + '\n');
  EXPECT_THAT(codex(), ElementsAre(0));
}

TEST_F(UsageReaderTest, ASessionWithoutTotalsIsNoEvent) {
  write(m_codexLog, codexTotals(0) + '\n');
  write(QStringLiteral(".codex/sessions/b.jsonl"), codexTotals(-5) + '\n');
  write(QStringLiteral(".codex/sessions/c.jsonl"), "{}\n");
  write(QStringLiteral(".codex/sessions/d.jsonl"), "");
  EXPECT_THAT(codex(), IsEmpty());
}

TEST_F(UsageReaderTest, TotalsThatAreCutOffOrNullDoNotCount) {
  write(m_codexLog, codexTotals(100) + '\n' + R"({"payload":{"type":"token_count","info":null}})" +
                        '\n' + codexTotals(200).left(150));
  EXPECT_THAT(codex(), ElementsAre(100));
  append(m_codexLog, codexTotals(200).sliced(150));
  EXPECT_THAT(codex(), ElementsAre(200));
  append(m_codexLog, "x\n");
  EXPECT_THAT(codex(), ElementsAre(100));
}

TEST_F(UsageReaderTest, TotalsFarFromTheEndAreFound) {
  const QByteArray filler = QByteArray(50000, 'x') + '\n';
  write(m_codexLog, filler + codexTotals(7) + '\n' + filler.repeated(10));
  EXPECT_THAT(codex(), ElementsAre(7));
  append(m_codexLog, filler.repeated(10));
  EXPECT_THAT(codex(), ElementsAre(7));
  append(m_codexLog, codexTotals(9) + '\n' + filler);
  EXPECT_THAT(codex(), ElementsAre(9));
}

TEST_F(UsageReaderTest, TotalsOf64MegabytesCount) {
  const QByteArray totals = codexTotals(2);
  const QByteArray blank(static_cast<qsizetype>(LogLine::longest) - totals.size(), ' ');
  write(m_codexLog, codexTotals(1) + '\n' + totals.chopped(1) + blank + "}\n{}\n");
  EXPECT_THAT(codex(), ElementsAre(2));
}

TEST_F(UsageReaderTest, ALineOfASessionThatIsTooLongHidesNoOther) {
  write(m_codexLog, codexTotals(1) + '\n');
  lengthen(m_codexLog, LogLine::longest + 1);
  EXPECT_THAT(codex(), ElementsAre(1));
  append(m_codexLog, codexTotals(2));
  EXPECT_THAT(codex(), ElementsAre(1));
  append(m_codexLog, "\n");
  EXPECT_THAT(codex(), ElementsAre(1));
  append(m_codexLog, codexTotals(3));
  EXPECT_THAT(codex(), ElementsAre(3));
  append(m_codexLog, "\n");
  EXPECT_THAT(codex(), ElementsAre(3));
}

/// Two files that the file system gives one number, as some network file systems do.
class TwoOfOneNumber : public UsageReaderTest {
protected:
  void SetUp() override {
    m_tree.write(QStringLiteral("a.jsonl"), claudeReply(1) + '\n');
    m_tree.write(QStringLiteral("b.jsonl"), claudeReply(2) + '\n');
  }
  [[nodiscard]] std::vector<std::int64_t> read(bool hasOtherNames) {
    std::vector<LogFile> files;
    for (const auto *name : {"a.jsonl", "b.jsonl"}) {
      files.push_back({.path = m_tree.path(QString::fromLatin1(name)).toStdString(),
                       .identity = {.device = 1, .inode = 2, .size = 3},
                       .hasOtherNames = hasOtherNames});
    }
    LogMemory<ClaudeLog> memory;
    memory.update(files, WallTime(), {});
    TokenEvents events;
    for (const LogFile &file : files) {
      memory.of(file).append(WallTime(), events);
    }
    return billables(events);
  }
};

TEST_F(TwoOfOneNumber, AreTwoLogs) { EXPECT_THAT(read(false), ElementsAre(1, 2)); }

TEST_F(TwoOfOneNumber, AreOneWhereAFileHasSeveralNames) {
  EXPECT_THAT(read(true), ElementsAre(1, 1));
}

} // namespace
} // namespace morvo
