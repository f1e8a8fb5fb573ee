#include "PetDesk.h"

#include <QWheelEvent>

#include <cmath>

namespace morvo {
namespace {

/// A pet on a monitor of 1280 by 800 with a panel of 30 at its top; its window is 312 by 410.
class PetMotionTest : public test::PetDesk {
protected:
  PetMotionTest() : m_window(&shown()) { m_window->moveTo({400, 200}); }

  [[nodiscard]] const PetMotion &motion() const { return *m_controller->motion(); }
  [[nodiscard]] PetScene &scene() { return m_controller->scene(); }

  void press() {
    m_pointer = m_window->position() + QPoint(150, 300);
    send(QEvent::MouseButtonPress);
  }
  void dragBy(QPointF way) {
    m_at += 20;
    m_pointer += way;
    send(QEvent::MouseMove);
  }
  void release() { send(QEvent::MouseButtonRelease); }
  void flingBy(QPointF way) {
    press();
    dragBy(way);
    dragBy(way);
    release();
  }
  void send(QEvent::Type type) { mouse(*m_window, type, m_pointer, m_at); }
  void scroll(int angle) {
    const QPointF at(150, 300);
    QWheelEvent event(at, m_window->position() + at, {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_window, &event);
  }
  /// Lets the flight end; false when it does not within a minute.
  [[nodiscard]] bool lands() {
    for (int i = 0; i < 60 && motion().isFlying(); ++i) {
      m_scheduler.advance(seconds(1));
    }
    return !motion().isFlying();
  }
  [[nodiscard]] static int bottom(const QRect &rect) { return rect.y() + rect.height(); }

  DesktopPetWindow *m_window;
  QPointF m_pointer;
  quint64 m_at = 5000;
};

TEST_F(PetMotionTest, ADragOfTwoPointsIsAClickThoughTheWindowHasFollowed) {
  press();
  dragBy({2, 0});
  EXPECT_FALSE(scene().isCarried());
  release();
  EXPECT_EQ(m_interactions.taps, 1);
  EXPECT_EQ(m_window->position(), QPoint(402, 200));
}

TEST_F(PetMotionTest, ADragOfFortyPointsCarriesThePetAndIsNoClick) {
  press();
  for (int i = 0; i < 8; ++i) {
    dragBy({5, 0});
  }
  EXPECT_TRUE(scene().isCarried());
  EXPECT_TRUE(motion().isCarried());
  EXPECT_EQ(m_window->position(), QPoint(440, 200));
  release();
  EXPECT_FALSE(scene().isCarried());
  EXPECT_FALSE(motion().isFlying());
  EXPECT_EQ(m_interactions.taps, 0);
  EXPECT_EQ(m_window->position(), QPoint(440, 200));
}

TEST_F(PetMotionTest, TheCarriedPetLeansAgainstTheWay) {
  press();
  dragBy({8, 0});
  scene().advance(m_clock.instant() + seconds(0.119));
  EXPECT_NEAR(scene().lifeNode().rotation(), 8 * 55 / -1600.0, 0.01);
  m_clock.advance(seconds(0.119));
  dragBy({-100, 0});
  scene().advance(m_clock.instant() + seconds(0.119));
  EXPECT_NEAR(scene().lifeNode().rotation(), 0.28, 0.01);
}

TEST_F(PetMotionTest, ASlowReleaseLeavesThePetHalfOutsideButWithinReach) {
  press();
  dragBy({9, 0});
  for (int i = 0; i < 180; ++i) {
    dragBy({8, -4});
  }
  release();
  EXPECT_FALSE(motion().isFlying());
  EXPECT_EQ(m_window->position(), QPoint(1232, 30 + 48 - 410));
}

TEST_F(PetMotionTest, AFastReleaseThrowsThePetUntilItRestsOnTheFloor) {
  flingBy({20, -10});
  EXPECT_TRUE(motion().isFlying());
  EXPECT_TRUE(scene().isTossed());
  EXPECT_FALSE(scene().isCarried());
  const int start = m_window->x();
  m_scheduler.advance(seconds(0.1));
  EXPECT_GT(m_window->x(), start);
  ASSERT_TRUE(lands());
  EXPECT_FALSE(scene().isTossed());
  EXPECT_EQ(bottom(m_window->geometry()), 800);
}

struct ThrowRow {
  const char *name;
  QPointF way;
};

class ThrowTest : public PetMotionTest, public testing::WithParamInterface<ThrowRow> {};

TEST_P(ThrowTest, StaysOnTheWorkAreaAllTheWay) {
  flingBy(GetParam().way);
  ASSERT_TRUE(motion().isFlying());
  int left = 2000;
  int right = -2000;
  int top = 2000;
  for (int i = 0; i < 3000 && motion().isFlying(); ++i) {
    m_scheduler.advance(seconds(1.0 / 60));
    left = std::min(left, m_window->x());
    right = std::max(right, m_window->x() + m_window->width());
    top = std::min(top, m_window->y());
    ASSERT_TRUE(m_screens.workArea().contains(m_window->geometry()));
  }
  ASSERT_FALSE(motion().isFlying());
  const QPointF way = GetParam().way;
  // The panel is the ceiling, not the screen's edge.
  EXPECT_EQ(top == 30, way.y() < -30);
  EXPECT_TRUE(way.x() > -30 || left == 0);
  EXPECT_TRUE(way.x() < 30 || right == 1280);
}

INSTANTIATE_TEST_SUITE_P(Directions, ThrowTest,
                         testing::Values(ThrowRow{"up", {0, -60}}, ThrowRow{"left", {-60, -12}},
                                         ThrowRow{"right", {60, -12}}, ThrowRow{"down", {2, 40}},
                                         ThrowRow{"wild", {150, -150}}),
                         [](const auto &row) { return row.param.name; });

TEST_F(PetMotionTest, LandsWithASquash) {
  flingBy({0, -12});
  while (motion().isFlying()) {
    m_scheduler.advance(seconds(1.0 / 60));
  }
  double flattest = 1;
  double tallest = 1;
  for (int i = 0; i < 40; ++i) {
    scene().advance(m_clock.instant());
    flattest = std::min(flattest, scene().breathNode().yScale());
    tallest = std::max(tallest, scene().breathNode().yScale());
    m_clock.advance(seconds(0.01));
  }
  EXPECT_LT(flattest, 0.95);
  EXPECT_GT(tallest, 1.03);
}

TEST_F(PetMotionTest, ThrowsOfTwoHundredOrNoNumberDoNothing) {
  m_controller->throwPet({200, 0});
  m_controller->throwPet({std::nan(""), 4000});
  m_controller->throwPet({INFINITY, 0});
  EXPECT_FALSE(motion().isFlying());
  EXPECT_FALSE(scene().isTossed());
}

TEST_F(PetMotionTest, AHandEndsAFlightAtOnce) {
  flingBy({20, -40});
  m_scheduler.advance(seconds(0.2));
  const QPoint caught = m_window->position();
  press();
  EXPECT_FALSE(motion().isFlying());
  EXPECT_FALSE(scene().isTossed());
  m_scheduler.advance(seconds(1));
  EXPECT_EQ(m_window->position(), caught);
  release();
}

TEST_F(PetMotionTest, AHandEndsAWalkAtOnce) {
  m_controller->strollRandom();
  ASSERT_TRUE(motion().isStrolling());
  m_scheduler.advance(seconds(0.8));
  const QPoint caught = m_window->position();
  press();
  EXPECT_FALSE(motion().isStrolling());
  EXPECT_FALSE(scene().isGaitActive());
  m_scheduler.advance(seconds(1));
  EXPECT_EQ(m_window->position(), caught);
  release();
}

TEST_F(PetMotionTest, AThrowDuringAWalkEndsTheWalk) {
  m_controller->strollRandom();
  m_controller->throwPet({900, -900});
  EXPECT_FALSE(motion().isStrolling());
  EXPECT_FALSE(scene().isGaitActive());
  EXPECT_TRUE(lands());
}

TEST_F(PetMotionTest, ACarriedOrFlyingPetDoesNotWalk) {
  press();
  dragBy({5, 0});
  m_controller->strollRandom();
  EXPECT_FALSE(motion().isStrolling());
  dragBy({20, -20});
  release();
  m_controller->strollRandom();
  m_controller->comeHere();
  EXPECT_FALSE(motion().isStrolling());
  EXPECT_TRUE(motion().isFlying());
}

TEST_F(PetMotionTest, AWalkIsHorizontalAndEasedAndEndsAtItsLength) {
  const QPoint start = m_window->position();
  m_controller->strollRandom();
  ASSERT_TRUE(motion().isStrolling());
  EXPECT_TRUE(scene().isGaitActive());
  int steps = 0;
  while (motion().isStrolling() && steps < 1000) {
    m_scheduler.advance(seconds(1.0 / 60));
    EXPECT_EQ(m_window->y(), start.y());
    ++steps;
  }
  EXPECT_FALSE(scene().isGaitActive());
  const int way = std::abs(m_window->x() - start.x());
  EXPECT_GE(way, 140);
  EXPECT_LE(way, 380);
  EXPECT_NEAR(steps / 60.0, std::clamp(way / 90.0, 1.2, 6.0), 0.1);
  EXPECT_EQ(scene().facing(), m_window->x() > start.x() ? 1 : -1);
}

TEST_F(PetMotionTest, ASecondWalkIsDroppedWhileTheFirstGoesOn) {
  m_controller->strollRandom();
  m_scheduler.advance(seconds(1));
  const double facing = scene().facing();
  m_window->requestUpdate();
  for (int i = 0; i < 20; ++i) {
    m_controller->strollRandom();
  }
  EXPECT_EQ(scene().facing(), facing);
  m_scheduler.advance(seconds(7));
  EXPECT_FALSE(motion().isStrolling());
}

TEST_F(PetMotionTest, WithoutRoomAWalkIsDropped) {
  m_screens.change({{{0, 0, 340, 800}, {0, 0, 340, 800}}});
  m_window->moveTo({10, 300});
  m_controller->strollRandom();
  EXPECT_FALSE(motion().isStrolling());
}

TEST_F(PetMotionTest, ComesToThePointerFromEitherSide) {
  for (const int pointer : {1100, 260, 640}) {
    m_screens.pointerAt = {pointer, 5};
    m_controller->comeHere();
    EXPECT_TRUE(motion().isStrolling());
    m_scheduler.advance(seconds(6.5));
    EXPECT_FALSE(motion().isStrolling());
    EXPECT_EQ(m_window->x(), pointer - 156);
    EXPECT_EQ(m_window->y(), 200);
  }
}

TEST_F(PetMotionTest, APetAtThePointerStaysThere) {
  m_screens.pointerAt = {400 + 156 + 8, 5};
  m_controller->comeHere();
  EXPECT_FALSE(motion().isStrolling());
}

TEST_F(PetMotionTest, ComingToAPointerFarAwayTakesSixSecondsAtMost) {
  m_screens.change({{{0, 0, 5120, 1440}, {0, 0, 5120, 1440}}});
  m_screens.pointerAt = {5000, 5};
  m_controller->comeHere();
  m_scheduler.advance(seconds(6.1));
  EXPECT_FALSE(motion().isStrolling());
  EXPECT_EQ(m_window->x(), 5000 - 156);
}

TEST_F(PetMotionTest, AHiddenPetNeitherFliesNorWalks) {
  flingBy({20, -40});
  m_controller->setVisible(false);
  EXPECT_FALSE(scene().isTossed());
  EXPECT_EQ(m_scheduler.pending(), 0U);
  m_controller->strollRandom();
  m_controller->comeHere();
  m_controller->throwPet({4000, 0});
  m_controller->recoverIfOffscreen();
  EXPECT_EQ(m_controller->motion(), nullptr);
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(PetMotionTest, APetHiddenWhileItIsCarriedOrWalksIsAtRestWhenItComesBack) {
  press();
  dragBy({30, 0});
  m_controller->setVisible(false);
  EXPECT_FALSE(scene().isCarried());
  m_window = &shown();
  m_controller->strollRandom();
  m_controller->setVisible(false);
  EXPECT_FALSE(scene().isGaitActive());
}

TEST_F(PetMotionTest, TheStepsRunOnlyWhileTheWindowMoves) {
  // The pictures' timer alone.
  EXPECT_EQ(m_scheduler.pending(), 1U);
  flingBy({20, -40});
  EXPECT_EQ(m_scheduler.pending(), 2U);
  ASSERT_TRUE(lands());
  EXPECT_EQ(m_scheduler.pending(), 1U);
  m_controller->strollRandom();
  EXPECT_EQ(m_scheduler.pending(), 2U);
  m_scheduler.advance(seconds(7));
  EXPECT_EQ(m_scheduler.pending(), 1U);
}

TEST_F(PetMotionTest, TheWheelGrowsThePetByThreeThousandthsAPixel) {
  m_interactions.setPetScale(1.4);
  scroll(120);
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 1.4 + 40 * 0.003);
  scroll(-240);
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 1.4 - 40 * 0.003);
  scroll(-12000);
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 0.8);
  EXPECT_EQ(m_window->size(), QSize(192, 290));
}

TEST_F(PetMotionTest, APetThatGrowsWhileItWalksWalksOnFromThere) {
  m_screens.pointerAt = {1100, 5};
  m_controller->comeHere();
  m_scheduler.advance(seconds(1));
  const QRect before = m_window->geometry();
  m_controller->setScale(1.0);
  EXPECT_EQ(m_window->x() + m_window->width(), before.x() + before.width());
  m_scheduler.advance(seconds(1.0 / 60));
  EXPECT_NEAR(m_window->x() + m_window->width(), before.x() + before.width(), 6);
  m_scheduler.advance(seconds(6));
  EXPECT_EQ(m_window->x(), 1100 - 156 + 312 - 232);
}

TEST_F(PetMotionTest, APetThatGrowsInFlightLandsOnTheFloor) {
  flingBy({20, -40});
  m_scheduler.advance(seconds(0.1));
  m_controller->setScale(2.4);
  ASSERT_TRUE(lands());
  EXPECT_TRUE(m_screens.workArea().contains(m_window->geometry()));
  EXPECT_EQ(bottom(m_window->geometry()), 800);
}

TEST_F(PetMotionTest, AWorkAreaThatShrinksInFlightStillHoldsThePet) {
  flingBy({40, -20});
  m_scheduler.advance(seconds(0.2));
  m_screens.change({{{0, 0, 1280, 800}, {60, 30, 800, 600}}});
  ASSERT_TRUE(lands());
  EXPECT_TRUE(m_screens.workArea().contains(m_window->geometry()));
}

TEST_F(PetMotionTest, AMonitorTakenAwayInFlightBringsThePetToTheOther) {
  const auto one = m_screens.areas();
  auto two = one;
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  m_window->moveTo({2400, 500});
  flingBy({20, -20});
  m_scheduler.advance(seconds(0.2));
  EXPECT_GT(m_window->x(), 2000);
  m_screens.change(one);
  static_cast<void>(lands());
  EXPECT_FALSE(motion().isFlying());
  EXPECT_TRUE(m_screens.workArea().contains(m_window->geometry()));
}

TEST_F(PetMotionTest, AThrowBouncesOffTheEdgesOfTheMonitorThePetIsOn) {
  auto two = m_screens.areas();
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1040}});
  m_screens.change(two);
  m_window->moveTo({1400, 500});
  flingBy({-60, 0});
  ASSERT_TRUE(lands());
  EXPECT_GE(m_window->x(), 1280);
  EXPECT_EQ(bottom(m_window->geometry()), 1040);
}

TEST_F(PetMotionTest, ACarriedPetGoesFromMonitorToMonitor) {
  auto two = m_screens.areas();
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  press();
  for (int i = 0; i < 160; ++i) {
    dragBy({8, 0});
  }
  m_screens.change(two);
  EXPECT_EQ(m_window->position(), QPoint(400 + 1280, 200));
  release();
  EXPECT_EQ(m_window->position(), QPoint(400 + 1280, 200));
}

TEST_F(PetMotionTest, AReleaseThatSomebodyElseGotEndsTheDrag) {
  press();
  dragBy({30, 0});
  QMouseEvent withoutButton(QEvent::MouseMove, QPointF(1, 1), m_pointer + QPointF(300, 0),
                            Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(m_window, &withoutButton);
  EXPECT_FALSE(motion().isCarried());
  EXPECT_FALSE(scene().isCarried());
}

TEST_F(PetMotionTest, AMoveWithoutTheButtonNeitherThrowsNorClicks) {
  for (const QPointF way : {QPointF(60, 0), QPointF(1, 0)}) {
    press();
    dragBy(way);
    QMouseEvent withoutButton(QEvent::MouseMove, QPointF(1, 1), m_pointer, Qt::NoButton,
                              Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_window, &withoutButton);
    EXPECT_FALSE(motion().isFlying());
    EXPECT_FALSE(scene().isCarried());
    EXPECT_EQ(m_interactions.taps, 0);
  }
}

TEST_F(PetMotionTest, APressAfterAnUnseenReleaseBeginsAnew) {
  press();
  dragBy({60, 0});
  press();
  EXPECT_FALSE(motion().isCarried());
  EXPECT_FALSE(motion().isFlying());
  EXPECT_FALSE(scene().isCarried());
  EXPECT_EQ(m_interactions.taps, 0);
  release();
  EXPECT_EQ(m_interactions.taps, 1);
  EXPECT_EQ(m_window->position(), QPoint(460, 200));
}

TEST_F(PetMotionTest, AnUnseenReleaseLeavesThePetWithinReach) {
  press();
  dragBy({3000, 0});
  press();
  EXPECT_EQ(m_window->position(), QPoint(m_screens.workArea().right() + 1 - 48, 200));
}

TEST_F(PetMotionTest, ALostPetComesBackWhenItsMonitorIsTakenAway) {
  const auto one = m_screens.areas();
  auto two = one;
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  const QPoint place = m_window->position();
  press();
  dragBy({1600, 0});
  m_screens.pointerAt = {20, 20};
  m_screens.change(one);
  EXPECT_FALSE(motion().isCarried());
  EXPECT_NE(m_window->position(), place + QPoint(1600, 0));
  EXPECT_TRUE(m_screens.workArea().contains(m_window->position()));
}

TEST_F(PetMotionTest, APetInTheHandStaysThereWhileMonitorsChange) {
  const auto one = m_screens.areas();
  auto two = one;
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  press();
  dragBy({1600, 0});
  m_screens.pointerAt = m_pointer.toPoint();
  m_screens.change(one);
  EXPECT_TRUE(motion().isCarried());
  EXPECT_EQ(m_window->position(), QPoint(2000, 200));
}

TEST_F(PetMotionTest, AWalkThatBeginsUnderAPressedButtonEndsWithTheFirstMove) {
  press();
  m_controller->strollRandom();
  ASSERT_TRUE(motion().isStrolling());
  m_scheduler.advance(seconds(0.5));
  dragBy({2, 0});
  EXPECT_FALSE(motion().isStrolling());
  EXPECT_FALSE(scene().isGaitActive());
  EXPECT_EQ(m_window->position(), QPoint(402, 200));
}

TEST_F(PetMotionTest, AWheelTurnedDuringADragLeavesTheDragAtTheLowerRightCorner) {
  press();
  dragBy({5, 0});
  const QRect before = m_window->geometry();
  scroll(120);
  const QRect grown = m_window->geometry();
  ASSERT_NE(grown.width(), before.width());
  EXPECT_EQ(grown.bottomRight(), before.bottomRight());
  dragBy({5, 5});
  EXPECT_EQ(m_window->geometry(), grown.translated(5, 5));
}

TEST_F(PetMotionTest, AReportOfAnEarlierPlaceIsNotBelieved) {
  // As the server tells of a step only after the pet was caught.
  m_window->setPosition(300, 100);
  press();
  m_pointer = QPointF(550, 500);
  send(QEvent::MouseButtonPress);
  dragBy({10, 0});
  EXPECT_EQ(m_window->position(), QPoint(410, 200));
}

TEST_F(PetMotionTest, TheRightButtonOpensTheMenuAndMovesNothing) {
  m_controller->strollRandom();
  const QPointF at = m_window->position() + QPoint(150, 300);
  mouse(*m_window, QEvent::MouseButtonPress, at, 0, Qt::RightButton);
  mouse(*m_window, QEvent::MouseButtonRelease, at, 0, Qt::RightButton);
  EXPECT_EQ(m_menu.openings, 1);
  EXPECT_EQ(m_menu.at, at.toPoint());
  EXPECT_EQ(m_interactions.taps, 0);
  EXPECT_TRUE(motion().isStrolling());
}

} // namespace
} // namespace morvo
