#include "monitor/LocalFleet.h"

#include "monitor/SessionHome.h"
#include "support/RunUntil.h"

#include <optional>

namespace morvo {
namespace {

using namespace std::chrono_literals;

QCoro::Task<> scanInto(LocalFleet *fleet, std::optional<std::vector<FleetSession>> *found) {
  auto sessions = co_await fleet->scan();
  *found = std::move(sessions);
}

class LocalFleetTest : public testing::Test {
protected:
  LocalFleetTest() { m_home.putClaude(QStringLiteral("s.jsonl"), R"({"cwd":"/a/b"})", 5s); }

  test::SessionHome m_home;
  std::optional<WorkerPool> m_workers = std::optional<WorkerPool>(std::in_place);
  std::optional<std::vector<FleetSession>> m_found;
};

TEST_F(LocalFleetTest, TheSessionsComeBackToTheThreadThatAsked) {
  LocalFleet fleet(m_home.home(), m_home.clock(), *m_workers);
  scanInto(&fleet, &m_found);
  EXPECT_FALSE(m_found.has_value());
  ASSERT_TRUE(test::runUntil([this] { return m_found.has_value(); }));
  ASSERT_EQ(m_found->size(), 1U);
  EXPECT_EQ(m_found->front().project, QStringLiteral("b"));
  EXPECT_EQ(m_found->front().ageSec, 5);
}

TEST_F(LocalFleetTest, AScanOutlivesItsSource) {
  {
    LocalFleet fleet(m_home.home(), m_home.clock(), *m_workers);
    scanInto(&fleet, &m_found);
  }
  ASSERT_TRUE(test::runUntil([this] { return m_found.has_value(); }));
  EXPECT_EQ(m_found->size(), 1U);
}

TEST_F(LocalFleetTest, WithoutItsWorkersAScanEndsEmpty) {
  LocalFleet fleet(m_home.home(), m_home.clock(), *m_workers);
  scanInto(&fleet, &m_found);
  m_workers.reset();
  ASSERT_TRUE(m_found.has_value());
  EXPECT_TRUE(m_found->empty());
}

} // namespace
} // namespace morvo
