#include "monitor/ProactiveGate.h"

#include "platform/SettingKeys.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using Decision = ProactiveGate::Decision;

constexpr Decision both{.bubble = true, .notify = true};
constexpr Decision bubbleOnly{.bubble = true, .notify = false};
constexpr Decision notifyOnly{.bubble = false, .notify = true};
constexpr Decision nothing{};

class ProactiveGateTest : public testing::Test {
protected:
  Decision decide(const char *line, int priority, bool notify) {
    return m_gate.decide(QString::fromUtf8(line), priority, notify, m_clock.instant());
  }
  void set(const QString &key, double value) {
    m_store.set(key, value);
    m_gate.configure(m_setting);
  }

  test::ManualClock m_clock;
  test::MemorySettings m_store;
  Setting m_setting{m_store, Environment{}};
  ProactiveGate m_gate{m_setting};
};

struct Row {
  int priority;
  bool notify;
  bool early;
  bool duplicate;
  Decision decision;
  bool remembers;
  bool movesLastBubble;
};

std::ostream &operator<<(std::ostream &out, const Row &row) {
  return out << "priority " << row.priority << " notify " << row.notify << " early " << row.early
             << " duplicate " << row.duplicate;
}

class ProactiveGateTable : public ProactiveGateTest, public testing::WithParamInterface<Row> {};

TEST_P(ProactiveGateTable, DecidesByTheFirstRowThatFits) {
  const Row &row = GetParam();
  const Instant now = m_clock.instant();
  const Instant before = now - seconds(row.early ? 44 : 45);
  m_gate.lastBubbleAt = before;
  if (row.duplicate) {
    m_gate.recent.push_back({.text = QStringLiteral("line"), .at = now - seconds(100)});
  }
  const std::size_t remembered = m_gate.recent.size();

  EXPECT_EQ(decide("line", row.priority, row.notify), row.decision);
  EXPECT_EQ(m_gate.recent.size(), remembered + (row.remembers ? 1 : 0));
  EXPECT_EQ(m_gate.lastBubbleAt, row.movesLastBubble ? now : before);
}

INSTANTIATE_TEST_SUITE_P(All, ProactiveGateTable,
                         testing::Values(
                             // What needs the user passes whatever else holds.
                             Row{2, true, false, false, both, true, true},
                             Row{2, true, false, true, both, true, true},
                             Row{2, true, true, false, both, true, true},
                             Row{2, true, true, true, both, true, true},
                             Row{2, false, false, false, bubbleOnly, true, true},
                             Row{2, false, false, true, bubbleOnly, true, true},
                             Row{2, false, true, false, bubbleOnly, true, true},
                             Row{2, false, true, true, bubbleOnly, true, true},
                             Row{3, true, true, true, both, true, true},
                             // A finished task with a notification.
                             Row{1, true, false, false, both, true, true},
                             Row{1, true, false, true, nothing, false, false},
                             Row{1, true, true, true, nothing, false, false},
                             Row{1, true, true, false, notifyOnly, true, false},
                             // Without one.
                             Row{1, false, false, false, bubbleOnly, true, true},
                             Row{1, false, false, true, nothing, false, false},
                             Row{1, false, true, false, nothing, false, false},
                             Row{1, false, true, true, nothing, false, false},
                             // Small talk never notifies, even when asked to.
                             Row{0, false, false, false, bubbleOnly, true, true},
                             Row{0, false, false, true, nothing, false, false},
                             Row{0, false, true, false, nothing, false, false},
                             Row{0, false, true, true, nothing, false, false},
                             Row{0, true, false, false, bubbleOnly, true, true},
                             Row{0, true, true, false, nothing, false, false},
                             Row{-1, true, false, false, bubbleOnly, true, true}));

TEST_F(ProactiveGateTest, OfTwoDoneLinesTenSecondsApartTheSecondOnlyNotifies) {
  EXPECT_EQ(decide("one", 1, true), both);
  m_clock.advance(seconds(10));
  EXPECT_EQ(decide("two", 1, true), notifyOnly);
}

TEST_F(ProactiveGateTest, TheSameDoneLineTenSecondsLaterGivesNothing) {
  EXPECT_EQ(decide("one", 1, true), both);
  m_clock.advance(seconds(10));
  EXPECT_EQ(decide("one", 1, true), nothing);
}

TEST_F(ProactiveGateTest, TheSameLinePassesAgainAfterMoreThanTheWindow) {
  EXPECT_EQ(decide("one", 1, true), both);
  m_clock.advance(seconds(180));
  EXPECT_EQ(decide("one", 1, true), nothing) << "exactly the window is still inside";
  m_clock.advance(std::chrono::milliseconds(1));
  EXPECT_EQ(decide("one", 1, true), both);
}

TEST_F(ProactiveGateTest, APriorityTwoLineWithoutNotificationStillStartsTheInterval) {
  EXPECT_EQ(decide("approve?", 2, false), bubbleOnly);
  EXPECT_EQ(decide("done", 1, true), notifyOnly);
  EXPECT_EQ(decide("chat", 0, false), nothing);
}

TEST_F(ProactiveGateTest, TheIntervalEndsAtItsLastInstant) {
  EXPECT_EQ(decide("one", 0, false), bubbleOnly);
  m_clock.advance(seconds(45) - Duration(1));
  EXPECT_EQ(decide("two", 0, false), nothing);
  m_clock.advance(Duration(1));
  EXPECT_EQ(decide("two", 0, false), bubbleOnly);
}

TEST_F(ProactiveGateTest, ANotificationAloneDoesNotMoveTheInterval) {
  EXPECT_EQ(decide("one", 1, true), both);
  m_clock.advance(seconds(44));
  EXPECT_EQ(decide("two", 1, true), notifyOnly);
  m_clock.advance(seconds(1));
  EXPECT_EQ(decide("three", 1, true), both);
}

TEST_F(ProactiveGateTest, AMinimumIntervalOfOneActsAsFive) {
  set(SettingKeys::proactiveMinInterval, 1);
  EXPECT_EQ(m_gate.minInterval, 5);
  EXPECT_EQ(decide("one", 0, false), bubbleOnly);
  m_clock.advance(seconds(4.9));
  EXPECT_EQ(decide("two", 0, false), nothing);
  m_clock.advance(seconds(0.2));
  EXPECT_EQ(decide("two", 0, false), bubbleOnly);
}

TEST_F(ProactiveGateTest, AWindowOfOneActsAsThirty) {
  set(SettingKeys::proactiveDedupWindow, 1);
  EXPECT_EQ(m_gate.dedupWindow, 30);
}

TEST_F(ProactiveGateTest, AChangedSettingHoldsFromTheNextLineOn) {
  EXPECT_EQ(decide("one", 0, false), bubbleOnly);
  m_clock.advance(seconds(10));
  EXPECT_EQ(decide("two", 0, false), nothing);
  set(SettingKeys::proactiveMinInterval, 10);
  EXPECT_EQ(decide("two", 0, false), bubbleOnly);
}

TEST_F(ProactiveGateTest, TheFirstLineIsNeverEarly) {
  EXPECT_FALSE(m_gate.lastBubbleAt.has_value());
  set(SettingKeys::proactiveMinInterval, 1e12);
  EXPECT_EQ(decide("one", 0, false), bubbleOnly);
}

TEST_F(ProactiveGateTest, AnEmptyLineIsNeverADuplicateAndNeverRemembered) {
  EXPECT_EQ(decide("", 2, false), bubbleOnly);
  EXPECT_TRUE(m_gate.recent.empty());
  m_clock.advance(seconds(45));
  EXPECT_EQ(decide("", 1, true), both);
  EXPECT_TRUE(m_gate.recent.empty());
}

TEST_F(ProactiveGateTest, ARepeatedPriorityTwoLineRenewsTheWindow) {
  EXPECT_EQ(decide("one", 2, true), both);
  m_clock.advance(seconds(100));
  EXPECT_EQ(decide("one", 2, true), both);
  m_clock.advance(seconds(100));
  EXPECT_EQ(decide("one", 1, true), nothing);
}

TEST_F(ProactiveGateTest, SettingTheCalendarBackChangesNothing) {
  EXPECT_EQ(decide("one", 0, false), bubbleOnly);
  m_clock.advance(seconds(50));
  m_clock.setCalendar(WallTime{});
  EXPECT_EQ(decide("two", 0, false), bubbleOnly);
}

TEST_F(ProactiveGateTest, LinesOlderThanTheWindowAreForgotten) {
  for (int i = 0; i < 1000; ++i) {
    static_cast<void>(decide(qPrintable(QString::number(i)), 2, false));
    m_clock.advance(seconds(1));
  }
  EXPECT_LE(m_gate.recent.size(), 181U);
}

} // namespace
} // namespace morvo
