#include "app/StoreFixture.h"

namespace morvo {
namespace {

class PetStoreAgentsTest : public test::StoreFixture {};

TEST_F(PetStoreAgentsTest, TheFlagsShowAtStartWhatTheFilesHold) {
  connector(0).connected = true;
  connector(3).connected = true;
  start();
  EXPECT_TRUE(m_store->claudeConnected());
  EXPECT_FALSE(m_store->codexConnected());
  EXPECT_FALSE(m_store->geminiConnected());
  EXPECT_TRUE(m_store->cursorConnected());
}

TEST_F(PetStoreAgentsTest, EachSwitchSetsItsOwnAgent) {
  start();
  m_store->setClaudeConnected(true);
  m_store->setCodexConnected(true);
  m_store->setGeminiConnected(true);
  m_store->setCursorConnected(true);
  for (qsizetype i = 0; i < 4; ++i) {
    EXPECT_TRUE(connector(i).connected) << i;
  }
  EXPECT_TRUE(m_store->claudeConnected() && m_store->codexConnected() &&
              m_store->geminiConnected() && m_store->cursorConnected());
  m_store->setGeminiConnected(false);
  EXPECT_FALSE(connector(2).connected);
  EXPECT_FALSE(m_store->geminiConnected());
  EXPECT_TRUE(m_store->claudeConnected());
}

TEST_F(PetStoreAgentsTest, AFailedChangeLeavesTheFlagAsTheFileIs) {
  start();
  connector(1).fails = true;
  m_store->setCodexConnected(true);
  EXPECT_FALSE(m_store->codexConnected());
  EXPECT_FALSE(m_store->setAgentConnected(QStringLiteral("codex"), true).has_value());
}

TEST_F(PetStoreAgentsTest, AnUnknownAgentChangesNothing) {
  start();
  EXPECT_TRUE(m_store->setAgentConnected(QStringLiteral("nobody"), true).has_value());
}

} // namespace
} // namespace morvo
