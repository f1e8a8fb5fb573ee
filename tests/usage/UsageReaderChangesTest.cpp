#include "base/RandomSource.h"
#include "support/ManualClock.h"
#include "usage/CodexUsageReader.h"
#include "usage/GenericUsageReader.h"
#include "usage/LogTree.h"
#include "usage/UsageReader.h"

#include <QDateTime>
#include <QFile>

#include <gtest/gtest.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// Rounds of changes; each is followed by a comparison.
constexpr int rounds = 1500;
constexpr double week = 168;

/// Changes logs as agents, editors and users do, by chance.
class Changes {
public:
  Changes(const test::LogTree &tree, test::ManualClock &clock, std::uint64_t seed)
      : m_tree(&tree), m_clock(&clock), m_random(seed) {}

  void next() {
    const QString log = anyLog();
    const bool exists = QFile::exists(m_tree->path(log));
    switch (exists ? m_random.below(10) : 0) {
    case 0:
      m_tree->write(log, lines(m_random.below(6)) + partOfALine());
      break;
    case 1:
      QFile::resize(m_tree->path(log), static_cast<qint64>(m_random.below(sizeOf(log) + 1)));
      break;
    case 2:
      replaceByRenaming(log);
      break;
    case 3:
      break;
    case 4:
      QFile::remove(m_tree->path(log));
      return;
    case 5:
      m_clock->advance(std::chrono::hours(m_random.below(8)));
      break;
    default:
      m_tree->append(log, m_random.below(3) == 0 ? partOfALine() : rest() + lines(1));
    }
    m_tree->setModified(log, m_clock->now() - std::chrono::milliseconds(m_random.below(5000)));
  }

private:
  QString anyLog() {
    const auto number = static_cast<int>(m_random.below(4));
    return (m_random.below(2) == 0 ? QStringLiteral(".claude/projects/p%1/log.jsonl")
                                   : QStringLiteral(".codex/sessions/%1/log.jsonl"))
        .arg(number);
  }
  std::size_t sizeOf(const QString &log) const {
    return static_cast<std::size_t>(QFile(m_tree->path(log)).size());
  }
  QByteArray line() {
    const auto count = static_cast<std::int64_t>(m_random.below(1000));
    const auto age = std::chrono::hours(m_random.below(200));
    const QString time =
        QDateTime::fromMSecsSinceEpoch((m_clock->now() - age).time_since_epoch().count(), Qt::UTC)
            .toString(Qt::ISODate);
    switch (m_random.below(5)) {
    case 4:
      return R"({"rate_limits":{"primary":{"used_percent":)" +
             QByteArray::number(static_cast<qlonglong>(count)) + "}}}";
    case 0:
      return test::claudeReply(count, 1, time.toLatin1());
    case 1:
      return test::codexTotals(count, count / 3);
    case 2:
      return R"({"x":"usage token_count"})";
    default:
      return "\"usage\" token_count " +
             QByteArray(static_cast<qsizetype>(m_random.below(9000)), 'x');
    }
  }
  QByteArray lines(std::size_t count) {
    QByteArray text;
    for (std::size_t i = 0; i < count; ++i) {
      text += line() + '\n';
    }
    return text;
  }
  QByteArray partOfALine() {
    m_rest = line() + '\n';
    const auto cut =
        static_cast<qsizetype>(m_random.below(static_cast<std::size_t>(m_rest.size())));
    const QByteArray part = m_rest.left(cut);
    m_rest = m_rest.sliced(cut);
    return part;
  }
  /// What may complete a line that was begun.
  QByteArray rest() { return m_random.below(2) == 0 ? std::exchange(m_rest, {}) : QByteArray(); }
  void replaceByRenaming(const QString &log) {
    m_tree->write(log + QStringLiteral(".new"), lines(3) + partOfALine());
    const QByteArray to = QFile::encodeName(m_tree->path(log));
    ASSERT_EQ(::rename((to + ".new").constData(), to.constData()), 0);
  }

  const test::LogTree *m_tree;
  test::ManualClock *m_clock;
  SeededRandomSource m_random;
  QByteArray m_rest;
};

class UsageReaderChanges : public testing::TestWithParam<int> {};

TEST_P(UsageReaderChanges, WhatIsRememberedIsWhatAFirstReadingFinds) {
  const test::LogTree tree;
  test::ManualClock clock;
  Changes changes(tree, clock, static_cast<std::uint64_t>(GetParam()));
  UsageReader remembering(tree.home(), clock);
  std::size_t found = 0;
  for (int i = 0; i < rounds; ++i) {
    changes.next();
    UsageReader fresh(tree.home(), clock);
    const auto claude = fresh.claudeEvents(week);
    const auto codex = fresh.codexEvents(week);
    ASSERT_EQ(remembering.claudeEvents(week), claude) << "round " << i;
    ASSERT_EQ(remembering.codexEvents(week), codex) << "round " << i;
    found += claude.size() + codex.size();
  }
  EXPECT_GT(found, std::size_t{rounds});
}

TEST_P(UsageReaderChanges, SoItIsOfSumsAndOfRateLimits) {
  const test::LogTree tree;
  test::ManualClock clock;
  Changes changes(tree, clock, static_cast<std::uint64_t>(GetParam()));
  GenericUsageReader remembering(tree.home(), clock);
  CodexUsageReader rememberingLimits(tree.home());
  std::size_t found = 0;
  for (int i = 0; i < rounds; ++i) {
    changes.next();
    // To this reader the logs of any agent are lines with counts.
    for (const QString &folder : {QStringLiteral(".claude"), QStringLiteral(".codex")}) {
      GenericUsageReader fresh(tree.home(), clock);
      const auto events = fresh.events(folder, week, QStringLiteral("gpt-5"));
      ASSERT_EQ(remembering.events(folder, week, QStringLiteral("gpt-5")), events) << "round " << i;
      found += events.size();
    }
    const auto limit = CodexUsageReader(tree.home()).latest();
    ASSERT_EQ(rememberingLimits.latest(), limit) << "round " << i;
    found += limit ? 1 : 0;
  }
  EXPECT_GT(found, std::size_t{rounds});
}

INSTANTIATE_TEST_SUITE_P(Seeds, UsageReaderChanges, testing::Range(1, 5));

} // namespace
} // namespace morvo
