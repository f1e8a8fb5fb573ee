#include "usage/SourceUsageDispatch.h"
#include "support/ManualClock.h"
#include "usage/LogTree.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

constexpr double week = 168;

class SourceUsageDispatchTest : public testing::Test {
protected:
  /// What two million tokens of the agent cost, which tells the model that was taken.
  [[nodiscard]] std::optional<double> cost(const QString &id, bool contributes = true) {
    const auto events = m_dispatch.events({.id = id, .contributesUsage = contributes}, week);
    return events.empty() ? std::nullopt : std::optional(events[0].cost);
  }
  void write(const QString &path) {
    m_tree.write(path, "{\"input_tokens\":2000000}\n");
    m_tree.setModified(path, m_clock.now());
  }

  test::LogTree m_tree;
  test::ManualClock m_clock;
  SourceUsageDispatch m_dispatch{m_tree.home(), m_clock};
};

TEST_F(SourceUsageDispatchTest, EachAgentHasItsFolderAndItsPrice) {
  const std::vector<std::pair<QString, double>> agents{{QStringLiteral("gemini"), 6.25},
                                                       {QStringLiteral("qwen"), 18},
                                                       {QStringLiteral("iflow"), 18},
                                                       {QStringLiteral("cursor"), 18}};
  for (const auto &[id, price] : agents) {
    EXPECT_FALSE(cost(id));
    write(u'.' + id + QStringLiteral("/a/log.jsonl"));
    EXPECT_EQ(cost(id), price) << id.toStdString();
  }
}

TEST_F(SourceUsageDispatchTest, OpenCodeIsSoughtInThreeFolders) {
  write(QStringLiteral(".opencode/log.jsonl"));
  EXPECT_EQ(cost(QStringLiteral("opencode")), 11.25);
  m_tree.write(QStringLiteral(".config/opencode/log.jsonl"), "{\"input_tokens\":2}\n");
  m_tree.setModified(QStringLiteral(".config/opencode/log.jsonl"), m_clock.now());
  EXPECT_EQ(cost(QStringLiteral("opencode")), 11.25 / 1e6);
  m_tree.write(QStringLiteral(".local/share/opencode/log.jsonl"), "{\"input_tokens\":4}\n");
  m_tree.setModified(QStringLiteral(".local/share/opencode/log.jsonl"), m_clock.now());
  EXPECT_EQ(cost(QStringLiteral("opencode")), 22.5 / 1e6);
}

TEST_F(SourceUsageDispatchTest, ClaudeAndCodexHaveReadersOfTheirOwn) {
  m_tree.write(QStringLiteral(".claude/projects/p/a.jsonl"), test::claudeReply(1000000) + '\n');
  m_tree.setModified(QStringLiteral(".claude/projects/p/a.jsonl"), m_clock.now());
  m_tree.write(QStringLiteral(".codex/sessions/a.jsonl"), test::codexTotals(2000000) + '\n');
  m_tree.setModified(QStringLiteral(".codex/sessions/a.jsonl"), m_clock.now());
  EXPECT_EQ(cost(QStringLiteral("claude")), 3);
  EXPECT_EQ(cost(QStringLiteral("codex")), 11.25);
}

TEST_F(SourceUsageDispatchTest, AnAgentThatDoesNotContributeGivesNothing) {
  write(QStringLiteral(".gemini/log.jsonl"));
  EXPECT_FALSE(cost(QStringLiteral("gemini"), false));
}

TEST_F(SourceUsageDispatchTest, AnUnknownAgentGivesNothing) {
  write(QStringLiteral(".other/log.jsonl"));
  EXPECT_FALSE(cost(QStringLiteral("other")));
  EXPECT_FALSE(cost(QString()));
}

} // namespace
} // namespace morvo
