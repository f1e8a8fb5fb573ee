#include "usage/CodexUsageReader.h"

#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

QByteArray limits(double primary, double weekly = 0) {
  return R"({"type":"event_msg","payload":{"type":"token_count","info":null,"rate_limits":{)"
         R"("primary":{"used_percent":)" +
         QByteArray::number(primary) + R"(},"secondary":{"used_percent":)" +
         QByteArray::number(weekly) + R"(},"plan_type":"pro"}}})";
}

class CodexUsageReaderTest : public testing::Test {
protected:
  /// Writes a log that was changed so many minutes before the others' standard time.
  void put(const QString &name, const QByteArray &content, int minutesOld = 0) {
    const QString path = logPath(name);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    setAge(name, minutesOld);
  }
  void setAge(const QString &name, int minutesOld) {
    const timespec time{.tv_sec = 1'700'000'000 - minutesOld * 60, .tv_nsec = 0};
    const std::array times{time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(logPath(name)).constData(), times.data(), 0),
              0);
  }
  [[nodiscard]] QString logPath(const QString &name) const {
    return m_folder.filePath(u".codex/sessions/"_s + name);
  }
  std::optional<double> primary() {
    const auto limit = m_reader.latest();
    return limit ? std::optional(limit->primaryPct) : std::nullopt;
  }

  QTemporaryDir m_folder;
  CodexUsageReader m_reader{HomeFolder{m_folder.path()}};
};

TEST_F(CodexUsageReaderTest, ARecordTellsBothWindowsTheirResetsAndThePlan) {
  const auto limit = CodexUsageReader::parse(
      R"({"timestamp":"2026-03-10T11:00:00.123456Z","payload":{"type":"token_count","rate_limits":)"
      R"({"primary":{"used_percent":12.5,"window_minutes":299,"resets_at":1772000000},)"
      R"("secondary":{"used_percent":80,"resets_at":1772500000.5},"plan_type":"plus"}}})");
  ASSERT_TRUE(limit);
  EXPECT_EQ(*limit, (LiveRateLimit{.primaryPct = 12.5,
                                   .weeklyPct = 80,
                                   .primaryResetsAt = WallTime(1772000000s),
                                   .weeklyResetsAt = WallTime(1772500000500ms),
                                   .plan = u"plus"_s}));
}

TEST_F(CodexUsageReaderTest, ARecordMayStandAtTheTopAndEachOfItsPartsMayBeMissing) {
  EXPECT_EQ(CodexUsageReader::parse(R"({"rate_limits":{}})"), LiveRateLimit{});
  EXPECT_EQ(CodexUsageReader::parse(R"({"rate_limits":{"secondary":{"used_percent":3}}})"),
            (LiveRateLimit{.weeklyPct = 3}));
  EXPECT_EQ(CodexUsageReader::parse(
                R"({"payload":{"rate_limits":null},"rate_limits":{"plan_type":"pro"}})"),
            (LiveRateLimit{.plan = u"pro"_s}));
  EXPECT_EQ(CodexUsageReader::parse(
                R"({"payload":{"rate_limits":{"primary":null,"secondary":7,"plan_type":1}}})"),
            LiveRateLimit{});
  EXPECT_EQ(CodexUsageReader::parse(
                R"({"rate_limits":{"primary":{"used_percent":"12","resets_at":"soon"}}})"),
            LiveRateLimit{});
}

TEST_F(CodexUsageReaderTest, ThePayloadsRecordComesBeforeTheTops) {
  EXPECT_EQ(
      CodexUsageReader::parse(
          R"({"rate_limits":{"plan_type":"top"},"payload":{"rate_limits":{"plan_type":"in"}}})")
          ->plan,
      u"in"_s);
}

TEST_F(CodexUsageReaderTest, ADateBeyondTheCalendarIsNone) {
  const auto limit = CodexUsageReader::parse(
      R"({"rate_limits":{"primary":{"resets_at":1e300},"secondary":{"resets_at":-1e300}}})");
  EXPECT_EQ(limit, LiveRateLimit{});
}

class OddRecordTest : public testing::TestWithParam<const char *> {};

TEST_P(OddRecordTest, SaysNothing) { EXPECT_FALSE(CodexUsageReader::parse(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Lines, OddRecordTest,
                         testing::Values("", "{}", R"(["rate_limits"])", R"({"rate_limits":null})",
                                         R"({"rate_limits":[]})", R"({"rate_limits":{)",
                                         R"({"text":"\"rate_limits\""})",
                                         R"({"rate_limits" :{}} trailing)",
                                         "\xFF{\"rate_limits\":{}}"));

TEST_F(CodexUsageReaderTest, WithoutLogsNothingIsSaid) { EXPECT_FALSE(primary()); }

TEST_F(CodexUsageReaderTest, TheLastOfSeveralRecordsCounts) {
  put(u"a.jsonl"_s, limits(1) + '\n' + limits(2) + "\n{\"text\":\"bye\"}\n");
  EXPECT_EQ(primary(), 2);
  put(u"a.jsonl"_s, limits(1) + '\n' + limits(2) + '\n' + limits(3));
  EXPECT_EQ(primary(), 3);
}

TEST_F(CodexUsageReaderTest, ARecordThatIsCutOffLeavesTheOneBefore) {
  put(u"a.jsonl"_s, limits(1) + '\n' + limits(2).chopped(9));
  EXPECT_EQ(primary(), 1);
}

TEST_F(CodexUsageReaderTest, ANewerLogWithoutARecordIsPassedOver) {
  put(u"old.jsonl"_s, limits(4), 10);
  put(u"new.jsonl"_s, "{\"rate_limits\":null}\n", 5);
  put(u"newest.jsonl"_s, "", 0);
  EXPECT_EQ(primary(), 4);
}

TEST_F(CodexUsageReaderTest, TheNewestLogWithARecordWinsWhereverItLies) {
  put(u"2026/03/09/a.jsonl"_s, limits(1), 5);
  put(u"b.jsonl"_s, limits(2), 10);
  put(u".hidden/c.jsonl"_s, limits(3), 1);
  EXPECT_EQ(primary(), 3);
}

TEST_F(CodexUsageReaderTest, TheThirteenthNewestLogIsNeverRead) {
  for (int number = 0; number < 12; ++number) {
    put(u"new%1.jsonl"_s.arg(number), "{}\n", number);
  }
  put(u"old.jsonl"_s, limits(7), 100);
  EXPECT_FALSE(primary());
  ASSERT_TRUE(QFile::remove(logPath(u"new3.jsonl"_s)));
  EXPECT_EQ(primary(), 7);
}

TEST_F(CodexUsageReaderTest, OtherFilesAreNoLogs) {
  put(u"a.json"_s, limits(1));
  put(u"a.JSONL"_s, limits(2));
  put(u"jsonl"_s, limits(3));
  EXPECT_FALSE(primary());
}

TEST_F(CodexUsageReaderTest, LinksFoldersAndPipesAreNoLogs) {
  put(u"real.jsonl"_s, "{}\n", 50);
  ASSERT_TRUE(QFile::link(m_folder.path(), logPath(u"loop"_s)));
  ASSERT_TRUE(QFile::link(logPath(u"nowhere"_s), logPath(u"dangling.jsonl"_s)));
  ASSERT_TRUE(QDir().mkpath(logPath(u"folder.jsonl"_s)));
  ASSERT_EQ(::mkfifo(QFile::encodeName(logPath(u"pipe.jsonl"_s)).constData(), 0600), 0);
  EXPECT_FALSE(primary());
}

TEST_F(CodexUsageReaderTest, ALogOrFolderWithoutPermissionIsPassedOver) {
  put(u"closed.jsonl"_s, limits(1), 0);
  put(u"folder/closed.jsonl"_s, limits(3), 1);
  put(u"open.jsonl"_s, limits(2), 5);
  ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()).constData(), 0755), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(logPath(u"closed.jsonl"_s)).constData(), 0), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(logPath(u"folder"_s)).constData(), 0), 0);
  {
    const test::Unprivileged user;
    ASSERT_TRUE(user.works());
    EXPECT_EQ(primary(), 2);
  }
  ASSERT_EQ(::chmod(QFile::encodeName(logPath(u"folder"_s)).constData(), 0755), 0);
}

TEST_F(CodexUsageReaderTest, BytesThatAreNoTextSpoilOnlyTheirLine) {
  put(u"a.jsonl"_s, limits(5) + "\n\xFF\xFE\0\n"_ba + "\n" + QByteArray(3, '\0') + limits(6));
  EXPECT_EQ(primary(), 5);
}

TEST_F(CodexUsageReaderTest, LongLinesAroundTheRecordDoNotHideIt) {
  const QByteArray longLine = "{\"text\":\"" + QByteArray(3 << 20U, 'x') + "\"}\n";
  put(u"a.jsonl"_s, longLine + limits(8) + '\n' + longLine + longLine);
  EXPECT_EQ(primary(), 8);
}

TEST_F(CodexUsageReaderTest, ALineOfGigabytesIsPassedOver) {
  put(u"a.jsonl"_s, limits(9) + '\n', 5);
  put(u"zeros.jsonl"_s, limits(1) + '\n');
  ASSERT_TRUE(QFile::resize(logPath(u"zeros.jsonl"_s), qint64{1} << 30U));
  setAge(u"zeros.jsonl"_s, 0);
  EXPECT_EQ(primary(), 1);
}

TEST_F(CodexUsageReaderTest, WhatWasAppendedReplacedOrRemovedShows) {
  put(u"a.jsonl"_s, limits(1) + '\n', 9);
  EXPECT_EQ(primary(), 1);
  put(u"a.jsonl"_s, limits(1) + '\n' + limits(2) + '\n', 8);
  EXPECT_EQ(primary(), 2);
  put(u"a.jsonl"_s, "{}\n", 7);
  EXPECT_FALSE(primary());
  put(u"b.jsonl"_s, limits(3), 20);
  EXPECT_EQ(primary(), 3);
  ASSERT_TRUE(QFile::remove(logPath(u"b.jsonl"_s)));
  EXPECT_FALSE(primary());
}

TEST_F(CodexUsageReaderTest, OfALogThatHasGrownOnlyWhatIsNewIsRead) {
  // As with an API key: records, but nothing in them.
  const QByteArray none = "{\"rate_limits\":null}\n";
  const QByteArray around = none.repeated(400);
  const QByteArray record = limits(7) + '\n';
  put(u"a.jsonl"_s, around + QByteArray(record.size() - 1, ' ') + '\n' + around, 9);
  EXPECT_FALSE(primary());
  // A record slipped in, far from both ends of what is known, is not come across.
  put(u"a.jsonl"_s, around + record + around + none, 8);
  EXPECT_FALSE(primary());
  put(u"a.jsonl"_s, around + record + around + none + limits(3).left(40), 7);
  EXPECT_FALSE(primary());
  put(u"a.jsonl"_s, around + record + around + none + limits(3), 6);
  EXPECT_EQ(primary(), 3);
  put(u"a.jsonl"_s, around + record + around + none + limits(3) + '\n' + none, 5);
  EXPECT_EQ(primary(), 3);
}

TEST_F(CodexUsageReaderTest, ALogThatCannotBeOpenedForAMomentIsTriedAgain) {
  put(u"a.jsonl"_s, limits(1), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()).constData(), 0755), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(logPath(u"a.jsonl"_s)).constData(), 0600), 0);
  if (::geteuid() == 0) {
    const test::Unprivileged user;
    ASSERT_TRUE(user.works());
    EXPECT_FALSE(primary());
  }
  EXPECT_EQ(primary(), 1);
}

TEST_F(CodexUsageReaderTest, ARecordOf64MegabytesCounts) {
  const QByteArray record = limits(6);
  put(u"a.jsonl"_s,
      record.chopped(1) + QByteArray((qsizetype{64} << 20U) - record.size(), ' ') + "}\n{}\n");
  EXPECT_EQ(primary(), 6);
}

TEST_F(CodexUsageReaderTest, AStopEndsTheLook) {
  put(u"a.jsonl"_s, limits(1));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_FALSE(m_reader.latest(stop.get_token()));
  EXPECT_EQ(primary(), 1);
}

} // namespace
} // namespace morvo
