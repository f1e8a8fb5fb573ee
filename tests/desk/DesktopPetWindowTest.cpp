#include "PetDesk.h"
#include "pet/PanelGeometry.h"

namespace morvo {
namespace {

class DesktopPetWindowTest : public test::PetDesk {
protected:
  static void click(DesktopPetWindow &window, QPointF from, QPointF to,
                    Qt::MouseButton button = Qt::LeftButton) {
    const QPointF corner = window.position();
    mouse(window, QEvent::MouseButtonPress, corner + from, 0, button);
    mouse(window, QEvent::MouseButtonRelease, corner + to, 0, button);
  }
};

TEST_F(DesktopPetWindowTest, IsAFramelessOverlayThatTakesNoFocus) {
  const DesktopPetWindow &window = shown();
  for (const Qt::WindowType flag : {Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint,
                                    Qt::WindowDoesNotAcceptFocus, Qt::Tool}) {
    EXPECT_EQ(window.flags() & flag, flag);
  }
  EXPECT_EQ(window.requestedFormat().alphaBufferSize(), 8);
}

TEST_F(DesktopPetWindowTest, AsksForAllWorkspacesBeforeItIsShown) {
  DesktopPetWindow &window = shown();
  EXPECT_EQ(m_windows.overlays, std::vector<QWindow *>{&window});
  EXPECT_TRUE(m_windows.preparedBeforeShown);
}

TEST_F(DesktopPetWindowTest, TheSpriteStandsAtTheBottomBelowTheRoomForTheBubble) {
  const DesktopPetWindow &window = shown();
  EXPECT_EQ(window.spriteRect(), QRect(16, 130, 280, 280));
  EXPECT_EQ(window.bubbleArea(), QRect(0, 0, 312, PanelGeometry::bubbleArea));
}

TEST_F(DesktopPetWindowTest, DrawsEachPictureOfTheSceneOnce) {
  DesktopPetWindow &window = shown();
  const std::uint64_t before = window.drawings();
  m_scheduler.advance(seconds(1));
  // The resting loop shows sixteen pictures a second.
  EXPECT_NEAR(static_cast<double>(window.drawings() - before), 16, 1);
}

TEST_F(DesktopPetWindowTest, KeepsOneTimerRunning) {
  shown();
  EXPECT_EQ(m_scheduler.pending(), 1U);
  m_scheduler.advance(seconds(3));
  EXPECT_EQ(m_scheduler.pending(), 1U);
}

TEST_F(DesktopPetWindowTest, PlaysAnActionAtItsOwnRate) {
  DesktopPetWindow &window = shown();
  ASSERT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  const std::uint64_t before = window.drawings();
  m_scheduler.advance(seconds(0.5));
  EXPECT_NEAR(static_cast<double>(window.drawings() - before), 12, 1);
}

TEST_F(DesktopPetWindowTest, ALateTimerDoesNotSlowTheAnimationDown) {
  DesktopPetWindow &window = shown();
  const std::uint64_t before = window.drawings();
  const Instant start = m_clock.instant();
  while (m_clock.instant() - start < seconds(2)) {
    // Each tick comes three milliseconds late, as on a busy machine.
    m_clock.advance(m_scheduler.untilNext() + std::chrono::milliseconds(3));
    m_scheduler.runDue();
  }
  EXPECT_NEAR(static_cast<double>(window.drawings() - before), 32, 2);
}

TEST_F(DesktopPetWindowTest, DrawsNothingWhileNothingIsToldAndNoTimePasses) {
  DesktopPetWindow &window = shown();
  m_scheduler.advance(seconds(1));
  const std::uint64_t before = window.drawings();
  window.wake();
  window.wake();
  EXPECT_EQ(window.drawings(), before);
}

TEST_F(DesktopPetWindowTest, ABurstOfOrdersIsNotDrawnOneByOne) {
  DesktopPetWindow &window = shown();
  m_scheduler.advance(seconds(1));
  const std::uint64_t before = window.drawings();
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  }
  EXPECT_LE(window.drawings() - before, 1U);
  m_scheduler.advance(seconds(0.1));
  EXPECT_GE(window.drawings() - before, 2U);
  EXPECT_LE(window.drawings() - before, 5U);
}

TEST_F(DesktopPetWindowTest, AnUncoveredWindowShowsItsPictureWithoutDrawingItAgain) {
  DesktopPetWindow &window = shown();
  m_scheduler.advance(seconds(1));
  const std::uint64_t before = window.drawings();
  const Duration untilNext = m_scheduler.untilNext();
  QExposeEvent uncovered(QRegion(0, 0, 10, 10));
  QCoreApplication::sendEvent(&window, &uncovered);
  EXPECT_EQ(window.drawings(), before);
  EXPECT_EQ(m_scheduler.untilNext(), untilNext);
}

TEST_F(DesktopPetWindowTest, AFadeOfTheBubbleIsDrawnSmoothlyThenEnds) {
  DesktopPetWindow &window = shown();
  const std::uint64_t before = window.drawings();
  m_controller->setBubble(QStringLiteral("写完啦"));
  m_scheduler.advance(seconds(0.2));
  EXPECT_GE(window.drawings() - before, 12U);
  m_scheduler.advance(seconds(0.1));
  const std::uint64_t after = window.drawings();
  m_scheduler.advance(seconds(1));
  EXPECT_NEAR(static_cast<double>(window.drawings() - after), 16, 1);
}

TEST_F(DesktopPetWindowTest, TheSameWordsAgainDrawNothing) {
  DesktopPetWindow &window = shown();
  m_controller->setBubble(QStringLiteral("写完啦"));
  m_scheduler.advance(seconds(1));
  const std::uint64_t before = window.drawings();
  m_controller->setBubble(QStringLiteral("写完啦"));
  EXPECT_EQ(window.drawings(), before);
}

TEST_F(DesktopPetWindowTest, ClicksCountOnThePetAndOnItsBubbleButNotBesideThem) {
  DesktopPetWindow &window = shown();
  ASSERT_FALSE(m_windows.inputRegions.empty());
  const QRegion silent = m_windows.inputRegions.back();
  const QPoint belly = window.spriteRect().center() + QPoint(0, 60);
  EXPECT_TRUE(silent.contains(belly));
  EXPECT_FALSE(silent.contains(QPoint(156, 100)));
  EXPECT_FALSE(silent.contains(QPoint(2, 400)));
  m_controller->setBubble(QStringLiteral("写完啦"));
  EXPECT_TRUE(m_windows.inputRegions.back().contains(QPoint(156, 110)));
  m_controller->setBubble({});
  EXPECT_FALSE(m_windows.inputRegions.back().contains(QPoint(156, 110)));
}

TEST_F(DesktopPetWindowTest, TellsTheDesktopOfClicksSeldomerThanItDraws) {
  shown();
  const std::size_t before = m_windows.inputRegions.size();
  m_scheduler.advance(seconds(2));
  EXPECT_LE(m_windows.inputRegions.size() - before, 9U);
}

TEST_F(DesktopPetWindowTest, IsCutToItsOutlineWhereNothingIsTransparent) {
  m_windows.setCompositing(false);
  shown();
  // From the start, before there is a picture, so that no black rectangle flashes up.
  ASSERT_GE(m_windows.shapes.size(), 2U);
  EXPECT_EQ(m_windows.shapes.front(), QRegion(0, 0, 1, 1));
  ASSERT_TRUE(m_windows.shapes.back());
  EXPECT_NE(m_windows.shapes.back(), m_windows.shapes.front());
}

TEST_F(DesktopPetWindowTest, GetsItsRectangleBackWhenACompositorComes) {
  m_windows.setCompositing(false);
  shown();
  m_windows.setCompositing(true);
  ASSERT_FALSE(m_windows.shapes.empty());
  EXPECT_EQ(m_windows.shapes.back(), std::nullopt);
  const std::size_t before = m_windows.shapes.size();
  m_scheduler.advance(seconds(1));
  EXPECT_EQ(m_windows.shapes.size(), before);
}

TEST_F(DesktopPetWindowTest, IsCutWhenTheCompositorGoes) {
  shown();
  EXPECT_TRUE(m_windows.shapes.empty());
  m_windows.setCompositing(false);
  ASSERT_FALSE(m_windows.shapes.empty());
  EXPECT_TRUE(m_windows.shapes.back());
}

TEST_F(DesktopPetWindowTest, APressAndReleaseInPlaceIsAClick) {
  click(shown(), {150, 300}, {150, 300});
  EXPECT_EQ(m_interactions.taps, 1);
}

TEST_F(DesktopPetWindowTest, AMoveOfThreePointsIsStillAClickAndAnyMoreIsNone) {
  DesktopPetWindow &window = shown();
  click(window, {150, 300}, {153, 300});
  EXPECT_EQ(m_interactions.taps, 1);
  click(window, {150, 300}, {153, 301});
  EXPECT_EQ(m_interactions.taps, 1);
}

TEST_F(DesktopPetWindowTest, ADragThatComesBackToItsBeginningIsNoClick) {
  DesktopPetWindow &window = shown();
  const QPointF at = window.position() + QPoint(150, 300);
  mouse(window, QEvent::MouseButtonPress, at);
  mouse(window, QEvent::MouseMove, at + QPointF(40, 0));
  mouse(window, QEvent::MouseMove, at);
  mouse(window, QEvent::MouseButtonRelease, at);
  EXPECT_EQ(m_interactions.taps, 0);
}

TEST_F(DesktopPetWindowTest, OtherButtonsAndALonelyReleaseAreNoClick) {
  DesktopPetWindow &window = shown();
  click(window, {150, 300}, {150, 300}, Qt::RightButton);
  mouse(window, QEvent::MouseButtonRelease, window.position() + QPoint(150, 300));
  EXPECT_EQ(m_interactions.taps, 0);
}

TEST_F(DesktopPetWindowTest, AClickMayTakeTheWindowAway) {
  m_interactions.onTap = [this] { m_controller->setVisible(false); };
  click(shown(), {150, 300}, {150, 300});
  EXPECT_EQ(m_controller->window(), nullptr);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace
} // namespace morvo
