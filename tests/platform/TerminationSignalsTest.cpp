#include "platform/linux/TerminationSignals.h"

#include "support/RunUntil.h"

#include <QCoreApplication>

#include <csignal>
#include <gtest/gtest.h>
#include <vector>

namespace morvo {
namespace {

int disposition(int number) {
  struct sigaction now{};
  ::sigaction(number, nullptr, &now);
  return now.sa_handler == SIG_DFL ? 0 : now.sa_handler == SIG_IGN ? 1 : 2;
}
constexpr int byDefault = 0;
constexpr int ignored = 1;

class TerminationSignalsTest : public testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, AreHeardFromTheEventLoopOnce) {
  std::vector<int> heard;
  const TerminationSignals listening([&heard](int number) { heard.push_back(number); });
  std::raise(GetParam());
  EXPECT_TRUE(heard.empty());
  EXPECT_TRUE(test::runUntil([&heard] { return !heard.empty(); }));
  EXPECT_EQ(heard, std::vector{GetParam()});
}

TEST_P(TerminationSignalsTest, ASecondOneEndsTheProcessAtOnce) {
  const TerminationSignals listening([](int) {});
  std::raise(GetParam());
  EXPECT_EQ(disposition(GetParam()), byDefault);
}

TEST_P(TerminationSignalsTest, AfterwardsTheFormerBehaviourIsBack) {
  {
    const TerminationSignals listening([](int) {});
  }
  EXPECT_EQ(disposition(GetParam()), byDefault);
}

TEST_P(TerminationSignalsTest, OneThatIsIgnoredStaysSo) {
  std::signal(GetParam(), SIG_IGN);
  int heard = 0;
  {
    const TerminationSignals listening([&heard](int) { ++heard; });
    EXPECT_EQ(disposition(GetParam()), ignored);
    std::raise(GetParam());
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(disposition(GetParam()), ignored);
  EXPECT_EQ(heard, 0);
  std::signal(GetParam(), SIG_DFL);
}

INSTANTIATE_TEST_SUITE_P(Signals, TerminationSignalsTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

} // namespace
} // namespace morvo
