#include "pet/DragTrack.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using std::chrono::milliseconds;

class DragTrackTest : public testing::Test {
protected:
  /// Moves of `way` each, `interval` after each other.
  void moveBy(QPointF way, milliseconds interval, int times) {
    for (int i = 0; i < times; ++i) {
      m_at += interval;
      m_track.move(m_track.pointer() + way, m_at);
    }
  }

  milliseconds m_at{1000};
  DragTrack m_track{{500, 400}, {450, 300}, m_at};
};

TEST_F(DragTrackTest, TheWindowFollowsFromTheFirstPointOn) {
  moveBy({2, 0}, milliseconds(20), 1);
  EXPECT_FALSE(m_track.hasMoved());
  EXPECT_EQ(m_track.windowOrigin(), QPoint(452, 300));
}

TEST_F(DragTrackTest, ThreePointsAreAClickAndAnyMoreIsADrag) {
  moveBy({0, 3}, milliseconds(20), 1);
  EXPECT_FALSE(m_track.hasMoved());
  moveBy({0, 0.1}, milliseconds(20), 1);
  EXPECT_TRUE(m_track.hasMoved());
}

TEST_F(DragTrackTest, ADragThatComesBackStaysADrag) {
  moveBy({40, 0}, milliseconds(20), 1);
  moveBy({-40, 0}, milliseconds(20), 1);
  EXPECT_TRUE(m_track.hasMoved());
  EXPECT_EQ(m_track.windowOrigin(), QPoint(450, 300));
}

TEST_F(DragTrackTest, TheWayIsThatOfTheLastMove) {
  moveBy({30, 4}, milliseconds(20), 3);
  moveBy({6, -8}, milliseconds(18), 1);
  EXPECT_EQ(m_track.lastWay(), QPointF(6, -8));
  EXPECT_EQ(m_track.velocity(), QPointF(330, -440));
}

TEST_F(DragTrackTest, NinePointsAreLetGoAndAnyMoreIsThrown) {
  moveBy({9, 0}, milliseconds(20), 2);
  EXPECT_FALSE(m_track.isThrow());
  moveBy({9.1, 0}, milliseconds(20), 1);
  EXPECT_TRUE(m_track.isThrow());
}

TEST_F(DragTrackTest, AHandThatWaitsBeforeItLetsGoKeepsItsLastMove) {
  moveBy({20, 0}, milliseconds(20), 3);
  EXPECT_EQ(m_track.lastWay(), QPointF(20, 0));
}

TEST_F(DragTrackTest, AMouseThatReportsAThousandTimesASecondThrowsLikeASlowOne) {
  // Sixteen points in sixteen milliseconds, one at a time.
  moveBy({1, 0}, milliseconds(1), 100);
  EXPECT_EQ(m_track.lastWay(), QPointF(16, 0));
  EXPECT_TRUE(m_track.isThrow());
  // And it stops within a frame when the hand does.
  moveBy({0, 0}, milliseconds(1), 16);
  EXPECT_EQ(m_track.lastWay(), QPointF(0, 0));
}

TEST_F(DragTrackTest, AClockThatBeginsAnewDuringADragLeavesTheHandAsFastAsItIs) {
  // The server counts milliseconds in 32 bits.
  DragTrack track({500, 400}, {450, 300}, milliseconds(0xFFFFFFF0));
  track.move({900, 400}, milliseconds(0xFFFFFFFF));
  track.move({902, 400}, milliseconds(15));
  EXPECT_EQ(track.lastWay(), QPointF(2, 0));
  track.move({903, 400}, milliseconds(23));
  EXPECT_EQ(track.lastWay(), QPointF(3, 0));
  track.move({904, 400}, milliseconds(35));
  EXPECT_EQ(track.lastWay(), QPointF(2, 0));
  EXPECT_FALSE(track.isThrow());
  EXPECT_EQ(track.windowOrigin(), QPoint(854, 300));
}

TEST_F(DragTrackTest, KeepsNoMoreThanAFrameOfALongDrag) {
  moveBy({1, 0}, milliseconds(1), 100000);
  EXPECT_EQ(m_track.windowOrigin(), QPoint(100450, 300));
  EXPECT_EQ(m_track.lastWay(), QPointF(16, 0));
}

TEST_F(DragTrackTest, AWindowPutElsewhereIsCarriedOnFromThere) {
  DragTrack track({100.25, 100}, {10, 20}, milliseconds(0));
  track.move({120.5, 100}, milliseconds(20));
  track.placeWindow({-40, 7});
  EXPECT_EQ(track.windowOrigin(), QPoint(-40, 7));
  track.move({121.5, 102}, milliseconds(40));
  EXPECT_EQ(track.windowOrigin(), QPoint(-39, 9));
  EXPECT_TRUE(track.hasMoved());
}

TEST_F(DragTrackTest, HalfPointsOfAScaledScreenAreRoundedForTheWindowOnly) {
  moveBy({0.5, 0.25}, milliseconds(20), 3);
  EXPECT_EQ(m_track.windowOrigin(), QPoint(452, 301));
  EXPECT_EQ(m_track.pointer(), QPointF(501.5, 400.75));
}

} // namespace
} // namespace morvo
