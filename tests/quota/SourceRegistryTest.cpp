#include "usage/SourceRegistry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

QStringList ids(const std::vector<SourceAdapter> &adapters) {
  QStringList found;
  for (const SourceAdapter &adapter : adapters) {
    found.append(adapter.id);
  }
  return found;
}

struct Row {
  QString id;
  QString name;
  QString probeRelative;
  SourceEventCapability events;
  bool contributesUsage;
};

class SourceRegistryTableTest : public testing::TestWithParam<std::pair<std::size_t, Row>> {};

TEST_P(SourceRegistryTableTest, EachAgentStandsInItsPlaceWithItsFacts) {
  const auto &[index, row] = GetParam();
  ASSERT_EQ(SourceRegistry::all().size(), 8U);
  const SourceAdapter expected{.id = row.id,
                               .name = row.name,
                               .probeRelative = row.probeRelative,
                               .eventCapability = row.events,
                               .contributesUsage = row.contributesUsage};
  EXPECT_EQ(SourceRegistry::all().at(index), expected);
  EXPECT_EQ(SourceRegistry::adapter(row.id), expected);
}

std::vector<std::pair<std::size_t, Row>> rows() {
  using enum SourceEventCapability;
  return {
      {0, {u"claude"_s, u"Claude Code"_s, u".claude/projects"_s, hooks, true}},
      {1, {u"codex"_s, u"Codex"_s, u".codex/sessions"_s, hooks, true}},
      {2, {u"gemini"_s, u"Gemini CLI"_s, u".gemini"_s, hooks, true}},
      {3, {u"qwen"_s, u"Qwen Code"_s, u".qwen"_s, heuristic, true}},
      {4, {u"iflow"_s, u"iFlow"_s, u".iflow"_s, heuristic, true}},
      {5, {u"opencode"_s, u"OpenCode"_s, u".local/share/opencode"_s, heuristic, true}},
      {6, {u"cursor"_s, u"Cursor"_s, u".cursor"_s, hooks, true}},
      {7, {u"copilot"_s, u"GitHub Copilot"_s, u".copilot"_s, none, false}},
  };
}

INSTANTIATE_TEST_SUITE_P(Rows, SourceRegistryTableTest, testing::ValuesIn(rows()),
                         [](const auto &row) { return row.param.second.id.toStdString(); });

class SourceRegistryTest : public testing::Test {
protected:
  void makeFolder(const QString &relative) { ASSERT_TRUE(QDir(m_folder.path()).mkpath(relative)); }
  [[nodiscard]] QStringList detected() const {
    return ids(SourceRegistry::detected({m_folder.path()}));
  }

  QTemporaryDir m_folder;
};

TEST_F(SourceRegistryTest, ThePrimaryAgentsAreClaudeAndCodex) {
  EXPECT_EQ(SourceRegistry::primaryIDs(), (QSet{u"claude"_s, u"codex"_s}));
  EXPECT_EQ(ids(SourceRegistry::primary()), (QStringList{u"claude"_s, u"codex"_s}));
}

TEST_F(SourceRegistryTest, AnUnknownIdHasNoAdapter) {
  EXPECT_FALSE(SourceRegistry::adapter(u"Claude"_s).has_value());
  EXPECT_FALSE(SourceRegistry::adapter({}).has_value());
}

TEST_F(SourceRegistryTest, AnEmptyHomeHasNoAgent) { EXPECT_TRUE(detected().isEmpty()); }

TEST_F(SourceRegistryTest, APrimaryAgentIsFoundByItsFolder) {
  makeFolder(u".codex/sessions"_s);
  EXPECT_EQ(detected(), QStringList{u"codex"_s});
  makeFolder(u".claude/projects"_s);
  EXPECT_EQ(detected(), (QStringList{u"claude"_s, u"codex"_s}));
}

TEST_F(SourceRegistryTest, AFileInThePlaceOfTheFolderIsEnough) {
  makeFolder(u".claude"_s);
  QFile file(m_folder.filePath(u".claude/projects"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(detected(), QStringList{u"claude"_s});
}

TEST_F(SourceRegistryTest, OtherAgentsAreNotMeasured) {
  makeFolder(u".gemini"_s);
  makeFolder(u".cursor"_s);
  makeFolder(u".claude"_s);
  EXPECT_TRUE(detected().isEmpty());
}

} // namespace
} // namespace morvo
