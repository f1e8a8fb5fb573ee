#include "usage/AgentScanner.h"

#include "base/SystemFileLayer.h"
#include "support/ManualClock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <limits>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class AgentScannerTest : public testing::Test {
protected:
  void put(const QString &name, const QByteArray &content) {
    const QString path = m_folder.filePath(name);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  void hasClaude() { ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".claude/projects"_s)); }
  void hasCodex() { ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".codex/sessions"_s)); }
  [[nodiscard]] TokenEvent event(Duration ago, std::int64_t billable, double cost = 0) const {
    return {.ts = m_now - std::chrono::duration_cast<std::chrono::milliseconds>(ago),
            .billable = billable,
            .cacheRead = 5,
            .cost = cost,
            .burnable = true};
  }
  UsageSnapshot scan() {
    return AgentScanner::snapshot(m_home, m_now, m_accounts,
                                  [this](const SourceAdapter &agent, double hours) {
                                    EXPECT_EQ(hours, 168);
                                    m_asked.append(agent.id);
                                    return m_events.value(agent.id);
                                  });
  }

  QTemporaryDir m_folder;
  HomeFolder m_home{m_folder.path()};
  SystemFileLayer m_files;
  AccountReader m_accounts{m_home, m_files};
  WallTime m_now = test::ManualClock().now();
  QHash<QString, TokenEvents> m_events;
  QStringList m_asked;
};

TEST_F(AgentScannerTest, WithNeitherFolderThereIsNothingAndNoLogIsAskedFor) {
  ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".gemini"_s));
  EXPECT_EQ(scan(), UsageSnapshot());
  EXPECT_TRUE(m_asked.isEmpty());
}

TEST_F(AgentScannerTest, EachAgentTellsItsWindowItsWeekAndItsCost) {
  hasClaude();
  hasCodex();
  m_events[u"claude"_s] = {event(1h, 10, 0.5), event(4h, 20, 0.25), event(6h, 40, 8)};
  m_events[u"codex"_s] = {event(100h, 3, 1)};
  const auto snapshot = scan();
  ASSERT_EQ(snapshot.agents.size(), 2U);
  EXPECT_EQ(snapshot.agents.at(0),
            (DetectedAgent{.id = u"claude"_s,
                           .name = u"Claude Code"_s,
                           .detectedPath = m_folder.filePath(u".claude/projects"_s),
                           .windowTokens = 30,
                           .weekTokens = 70,
                           .cost = 0.75}));
  EXPECT_EQ(snapshot.agents.at(1),
            (DetectedAgent{.id = u"codex"_s,
                           .name = u"Codex"_s,
                           .detectedPath = m_folder.filePath(u".codex/sessions"_s),
                           .windowTokens = 0,
                           .weekTokens = 3,
                           .cost = 0}));
  EXPECT_EQ(snapshot.weekTokens, 73);
  EXPECT_EQ(snapshot.events.size(), 4U);
  EXPECT_EQ(snapshot.events[3], event(100h, 3, 1));
  EXPECT_EQ(m_asked, (QStringList{u"claude"_s, u"codex"_s}));
}

TEST_F(AgentScannerTest, TheWindowBeginsExactlyFiveHoursAgo) {
  hasClaude();
  m_events[u"claude"_s] = {event(5h, 1, 1), event(5h + 1ms, 2, 2)};
  const auto agents = scan().agents;
  EXPECT_EQ(agents.at(0).windowTokens, 1);
  EXPECT_EQ(agents.at(0).weekTokens, 3);
  EXPECT_EQ(agents.at(0).cost, 1);
}

TEST_F(AgentScannerTest, AnAgentWithOldLogsOnlyHasAWeekAndNoWindow) {
  hasCodex();
  m_events[u"codex"_s] = {event(48h, 9)};
  const auto agents = scan().agents;
  EXPECT_GT(agents.at(0).weekTokens, 0);
  EXPECT_EQ(agents.at(0).windowTokens, 0);
}

TEST_F(AgentScannerTest, AnAgentWithoutEventsIsThereAllTheSame) {
  hasClaude();
  EXPECT_EQ(scan().agents.size(), 1U);
}

TEST_F(AgentScannerTest, SumsStopAtTheEndsOfTheNumbers) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  hasClaude();
  hasCodex();
  m_events[u"claude"_s] = {event(1h, most), event(1h, most)};
  m_events[u"codex"_s] = {event(1h, 5)};
  EXPECT_EQ(scan().agents.at(0).windowTokens, most);
  EXPECT_EQ(scan().weekTokens, most);
  m_events[u"claude"_s] = {event(1h, least), event(1h, least)};
  EXPECT_EQ(scan().agents.at(0).weekTokens, least);
}

TEST_F(AgentScannerTest, TheAccountsAreReadForBoth) {
  hasClaude();
  hasCodex();
  put(u".claude.json"_s, R"({"oauthAccount":{"displayName":"Ada"}})");
  put(u".codex/auth.json"_s, R"({"email":"ada@example.org"})");
  const auto agents = scan().agents;
  EXPECT_EQ(agents.at(0).account, (AgentAccount{.label = u"Ada"_s, .plan = {}}));
  EXPECT_EQ(agents.at(1).account, (AgentAccount{.label = u"ada@example.org"_s, .plan = {}}));
}

TEST_F(AgentScannerTest, TheOfficialFiguresGoToTheirAgents) {
  hasClaude();
  hasCodex();
  const LiveRateLimit limit{.primaryPct = 9, .plan = u"pro"_s};
  const auto agents =
      AgentScanner::withLimits(scan(), {{u"codex"_s, limit}, {u"gemini"_s, LiveRateLimit{}}})
          .agents;
  ASSERT_EQ(agents.size(), 2U);
  EXPECT_FALSE(agents.at(0).liveLimit);
  EXPECT_EQ(agents.at(1).liveLimit, limit);
}

TEST_F(AgentScannerTest, WhatIsPresentHasNoFigures) {
  hasCodex();
  put(u".codex/auth.json"_s, R"({"email":"ada@example.org"})");
  EXPECT_EQ(AgentScanner::present(m_home),
            std::vector{(DetectedAgent{.id = u"codex"_s,
                                       .name = u"Codex"_s,
                                       .detectedPath = m_folder.filePath(u".codex/sessions"_s)})});
}

} // namespace
} // namespace morvo
