#include "PetDesk.h"
#include "base/Diagnostics.h"
#include "pet/BehaviorContext.h"
#include "platform/SettingKeys.h"

#include <QPointer>

#include <memory>

namespace morvo {
namespace {

using DesktopPetControllerTest = test::PetDesk;

TEST_F(DesktopPetControllerTest, DoesNotShowItselfToNobody) {
  m_controller->setInteractions(nullptr);
  m_controller->show();
  EXPECT_FALSE(m_controller->isVisible());
}

TEST_F(DesktopPetControllerTest, ShowsThePetAtItsDefaultPlaceInItsStoredSize) {
  m_settings.set(SettingKeys::petScale, 1.0);
  restart({});
  const QRect place = shown().geometry();
  EXPECT_EQ(place.size(), QSize(232, 330));
  EXPECT_EQ(place.x() + place.width(),
            m_screens.workArea().x() + m_screens.workArea().width() - 16);
  EXPECT_EQ(place.y() + place.height(),
            m_screens.workArea().y() + m_screens.workArea().height() - 70);
}

TEST_F(DesktopPetControllerTest, ShowingAgainLeavesTheWindowAlone) {
  DesktopPetWindow &window = shown();
  window.moveTo({40, 50});
  m_controller->setVisible(true);
  EXPECT_EQ(m_controller->window(), &window);
  EXPECT_EQ(window.position(), QPoint(40, 50));
}

TEST_F(DesktopPetControllerTest, HidingDropsTheWindowAndShowingBuildsItAnewAtTheDefaultPlace) {
  const QPointer<DesktopPetWindow> first(&shown());
  const QPoint place = first->position();
  first->moveTo({40, 50});
  m_controller->setVisible(false);
  EXPECT_FALSE(m_controller->isVisible());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(first.isNull());
  EXPECT_EQ(shown().position(), place);
}

TEST_F(DesktopPetControllerTest, StandsBeneathAnOpenPanelHoweverOftenItIsShownMeanwhile) {
  auto panel = std::make_unique<QWindow>();
  m_controller->standBeneath(panel.get());
  EXPECT_TRUE(m_windows.above.empty());
  shown();
  EXPECT_EQ(m_windows.above, std::vector<QWindow *>{panel.get()});
  m_controller->setVisible(false);
  shown();
  EXPECT_EQ(m_windows.above, (std::vector<QWindow *>{panel.get(), panel.get()}));
  m_controller->standBeneath(nullptr);
  EXPECT_EQ(m_windows.above.back(), nullptr);
  m_controller->setVisible(false);
  shown();
  EXPECT_EQ(m_windows.above.size(), 3U);
}

TEST_F(DesktopPetControllerTest, APanelThatIsGoneIsForgotten) {
  auto panel = std::make_unique<QWindow>();
  m_controller->standBeneath(panel.get());
  panel.reset();
  shown();
  EXPECT_TRUE(m_windows.above.empty());
}

TEST_F(DesktopPetControllerTest, AHiddenPetKeepsNoTimerAndNoListener) {
  shown();
  m_controller->setVisible(false);
  EXPECT_EQ(m_scheduler.pending(), 0U);
  EXPECT_FALSE(m_windows.hasListener());
  EXPECT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  m_controller->emitHearts();
  m_controller->setMood(QStringLiteral("sleepy"));
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(DesktopPetControllerTest, NothingPlaysBeforeThePetWasEverShown) {
  EXPECT_FALSE(m_controller->react(QStringLiteral("celebrate")));
}

TEST_F(DesktopPetControllerTest, ReactsWhenOnlyThePanelsStagePlays) {
  m_controller->popoverScene().present();
  EXPECT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  EXPECT_FALSE(m_controller->scene().isPerforming());
  EXPECT_TRUE(m_controller->popoverScene().isPerforming());
}

TEST_F(DesktopPetControllerTest, OrdersReachBothStages) {
  shown();
  m_controller->popoverScene().present();
  EXPECT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  m_controller->setMood(QStringLiteral("sleepy"));
  for (PetScene *scene : {&m_controller->scene(), &m_controller->popoverScene()}) {
    EXPECT_EQ(scene->mood(), QStringLiteral("sleepy"));
  }
}

TEST_F(DesktopPetControllerTest, AnUnknownActionPlaysNowhere) {
  shown();
  QStringList lines;
  const Diagnostics::Capture capture([&lines](const QString &line) { lines << line; });
  EXPECT_FALSE(m_controller->react(QStringLiteral("fly")));
  EXPECT_FALSE(lines.isEmpty());
}

TEST_F(DesktopPetControllerTest, AnActionBeginsWhenItIsOrderedHoweverLongThePetRested) {
  shown();
  m_controller->setVisible(false);
  m_clock.advance(seconds(3600));
  EXPECT_TRUE(m_controller->react(QStringLiteral("celebrate")));
  m_controller->scene().advance(m_clock.instant() + seconds(0.5));
  EXPECT_TRUE(m_controller->scene().isPerforming());
}

TEST_F(DesktopPetControllerTest, ScalingKeepsTheRightAndBottomEdgesOfTheWindow) {
  DesktopPetWindow &window = shown();
  const QRect before = window.geometry();
  for (const double scale : {2.0, 0.8, 1.4}) {
    m_controller->setScale(scale);
    EXPECT_EQ(window.x() + window.width(), before.x() + before.width());
    EXPECT_EQ(window.y() + window.height(), before.y() + before.height());
    EXPECT_EQ(window.spriteRect().width(), std::lround(scale * 200));
  }
}

TEST_F(DesktopPetControllerTest, AScaleToldWhileHiddenActsAtTheNextShow) {
  m_controller->setScale(2.0);
  EXPECT_EQ(shown().size(), QSize(432, 530));
}

TEST_F(DesktopPetControllerTest, WordsToldWhileHiddenStandWhenThePetIsShown) {
  m_controller->setBubble(QStringLiteral("你好"));
  EXPECT_EQ(shown().bubbleText(), QStringLiteral("你好"));
}

TEST_F(DesktopPetControllerTest, APetWhoseMonitorIsTakenAwayComesBackToTheDefaultPlace) {
  const auto one = m_screens.areas();
  auto two = one;
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  DesktopPetWindow &window = shown();
  const QPoint place = window.position();
  window.moveTo({2500, 400});
  m_screens.change(two);
  EXPECT_EQ(window.position(), QPoint(2500, 400));
  m_screens.change(one);
  EXPECT_EQ(window.position(), place);
}

TEST_F(DesktopPetControllerTest, APetOfWhichOnlyTheRoomForItsWordsIsLeftComesBack) {
  m_screens.change({{{0, 0, 2560, 1440}, {0, 0, 2560, 1440}}});
  DesktopPetWindow &window = shown();
  window.moveTo({500, 960});
  m_screens.change({{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}}});
  EXPECT_EQ(window.position(), QPoint(1920 - 16 - 312, 1080 - 70 - 410));
}

struct ShrinkRow {
  const char *name;
  QPoint before;
  QPoint after;
};

class ShrinkingPetTest : public DesktopPetControllerTest,
                         public testing::WithParamInterface<ShrinkRow> {};

// From a window of 312 by 410 to one of 192 by 290, on a work area from (0, 30) to (1280, 800).
TEST_P(ShrinkingPetTest, StaysWithinReach) {
  DesktopPetWindow &window = shown();
  window.moveTo(GetParam().before);
  m_controller->setScale(0.8);
  EXPECT_EQ(window.place(), QRect(GetParam().after, QSize(192, 290)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ShrinkingPetTest,
    testing::Values(ShrinkRow{"inTheMiddle", {500, 200}, {620, 320}},
                    ShrinkRow{"halfOutsideOnTheRight", {1200, 200}, {1232, 320}},
                    ShrinkRow{"halfOutsideAtTheBottom", {500, 560}, {620, 638}},
                    ShrinkRow{"onTheLeft", {-264, 200}, {-144, 320}},
                    ShrinkRow{"atTheTop", {500, -332}, {620, -212}},
                    ShrinkRow{"inTheCorner", {1232, 752}, {1232, 638}}),
    [](const auto &row) { return row.param.name; });

TEST_F(DesktopPetControllerTest, APetThatIsMadeSmallerInAHandIsNotTakenOutOfIt) {
  DesktopPetWindow &window = shown();
  const QPointF at = window.position() + QPoint(150, 300);
  mouse(window, QEvent::MouseButtonPress, at, 1000);
  mouse(window, QEvent::MouseMove, at + QPointF(1200 - window.x(), 0), 2000);
  mouse(window, QEvent::MouseMove, at + QPointF(1200 - window.x(), 0), 3000);
  const int right = window.place().x() + window.place().width();
  m_controller->setScale(0.8);
  EXPECT_EQ(window.place().x() + window.place().width(), right);
}

TEST_F(DesktopPetControllerTest, APetThatReachesOntoAnotherMonitorIsLeftThere) {
  auto two = m_screens.areas();
  two.push_back({{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}});
  m_screens.change(two);
  DesktopPetWindow &window = shown();
  window.moveTo({1100, 200});
  m_controller->setScale(0.8);
  EXPECT_EQ(window.position(), QPoint(1220, 320));
}

TEST_F(DesktopPetControllerTest, WhileNoMonitorIsThereThePetStaysForTheNext) {
  DesktopPetWindow &window = shown();
  const QPoint place = window.position();
  const auto areas = m_screens.areas();
  m_screens.change({});
  m_controller->throwPet({5000, -5000});
  m_scheduler.advance(seconds(1));
  m_controller->strollRandom();
  m_controller->recoverIfOffscreen();
  EXPECT_FALSE(m_controller->motion()->isFlying());
  EXPECT_FALSE(m_controller->scene().isTossed());
  m_screens.change(areas);
  EXPECT_EQ(window.position(), place);
}

TEST_F(DesktopPetControllerTest, APetWithinReachStaysWhereThePersonPutIt) {
  DesktopPetWindow &window = shown();
  window.moveTo({m_screens.workArea().right() - 60, 100});
  const QPoint place = window.position();
  m_screens.change(m_screens.areas());
  EXPECT_EQ(window.position(), place);
}

TEST_F(DesktopPetControllerTest, SaysWhereItStandsOnlyWhenDebugging) {
  QStringList lines;
  const Diagnostics::Capture capture([&lines](const QString &line) { lines << line; });
  shown();
  EXPECT_TRUE(lines.isEmpty());
  restart({{QStringLiteral("MORVO_DEBUG"), QStringLiteral("1")}});
  const DesktopPetWindow &window = shown();
  ASSERT_EQ(lines.size(), 1);
  EXPECT_EQ(lines.first(), QStringLiteral("[DESKPET] shown at (%1, %2, 312, 410) win=%3")
                               .arg(window.x())
                               .arg(window.y())
                               .arg(window.winId()));
}

TEST_F(DesktopPetControllerTest, OffersTheActionsOfTheBuiltInPet) {
  QStringList names;
  for (const PetMenuAction &action : m_controller->catalogActions()) {
    EXPECT_TRUE(action.hasFrames);
    names << action.frameSet;
  }
  names.sort();
  EXPECT_EQ(names.join(u' '),
            QStringLiteral("alert carried celebrate code curious droop greet idle petted sleep "
                           "tossed walk watching"));
}

TEST_F(DesktopPetControllerTest, AnotherModeIsStoredAndHasThePetDecideAnewInASecond) {
  m_settings.set(SettingKeys::behaviorMode, QStringLiteral("nonsense"));
  EXPECT_EQ(m_controller->behaviorMode(), PetBehaviorMode::natural);
  shown();
  m_controller->popoverScene().present();
  // Long enough after everything for the pet to act when it is asked, but just before it would be.
  m_scheduler.advance(seconds(29));
  ASSERT_FALSE(m_controller->scene().lastAutonomous());
  m_controller->setBehaviorMode(PetBehaviorMode::playful);
  EXPECT_EQ(m_controller->behaviorMode(), PetBehaviorMode::playful);
  m_scheduler.advance(seconds(0.9));
  EXPECT_FALSE(m_controller->scene().lastAutonomous());
  m_scheduler.advance(seconds(0.2));
  EXPECT_TRUE(m_controller->scene().lastAutonomous());
  m_controller->popoverScene().advance(m_clock.instant());
  EXPECT_TRUE(m_controller->popoverScene().lastAutonomous());
}

TEST_F(DesktopPetControllerTest, OnlyThePetOnTheDesktopWanders) {
  shown();
  EXPECT_TRUE(m_controller->scene().directorContext().strollAvailable);
  EXPECT_FALSE(m_controller->popoverScene().directorContext().strollAvailable);
}

TEST_F(DesktopPetControllerTest, APlayfulPetWandersByItself) {
  m_settings.set(SettingKeys::behaviorMode, QStringLiteral("playful"));
  DesktopPetWindow &window = shown();
  const QPoint start = window.position();
  for (int i = 0; i < 120 && window.x() == start.x(); ++i) {
    m_scheduler.advance(seconds(10));
  }
  EXPECT_NE(window.x(), start.x());
  EXPECT_EQ(window.y(), start.y());
  EXPECT_EQ(m_controller->scene().lastAutonomous(), QStringLiteral("stroll"));
}

TEST_F(DesktopPetControllerTest, AQuietPetStaysWhereItIs) {
  m_settings.set(SettingKeys::behaviorMode, QStringLiteral("playful"));
  DesktopPetWindow &window = shown();
  const QPoint start = window.position();
  m_controller->setQuietMode(true);
  EXPECT_TRUE(m_controller->popoverScene().isQuiet());
  m_scheduler.advance(seconds(400));
  EXPECT_EQ(window.position(), start);
  EXPECT_FALSE(m_controller->scene().lastAutonomous());
}

TEST_F(DesktopPetControllerTest, HeartsRiseOnBothStages) {
  shown();
  m_controller->popoverScene().present();
  const auto before = m_controller->scene().root().children().size();
  m_controller->emitHearts();
  EXPECT_EQ(m_controller->scene().root().children().size(), before + 5);
  EXPECT_EQ(m_controller->popoverScene().root().children().size(), before + 5);
}

} // namespace
} // namespace morvo
