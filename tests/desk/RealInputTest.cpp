#include "RealHandDesk.h"

#include <cstdint>

namespace morvo {
namespace {

using test::PrivateDesktop;

using RealInputTest = test::RealHandDesk;

TEST_F(RealInputTest, ADragOfTwoPointsIsAClick) {
  press();
  dragBy({2, 0});
  release();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_FALSE(scene().isCarried());
  EXPECT_TRUE(standsOnServerAt(m_windowAt + QPoint(2, 0)));
}

TEST_F(RealInputTest, ADragOfFortyPointsCarriesThePetAndALeisurelyReleaseLeavesItThere) {
  press();
  dragInSteps({-4, -4}, 8);
  settle({-1, -1});
  EXPECT_TRUE(scene().isCarried());
  m_screen = desktop().screenshot();
  keep(QStringLiteral("carried"));
  release();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return !scene().isCarried(); }));
  EXPECT_FALSE(motion().isFlying());
  EXPECT_EQ(m_interactions.taps, 0);
  EXPECT_TRUE(standsOnServerAt(m_windowAt + -QPoint(32 + settlingSteps, 32 + settlingSteps)));
}

TEST_F(RealInputTest, APetLeftHalfOutsideStaysThere) {
  press();
  dragInSteps({6, 0}, 16);
  settle({1, 0});
  release();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return !scene().isCarried(); }));
  EXPECT_GT(window().x() + window().width(), m_workArea.x() + m_workArea.width());
  EXPECT_TRUE(standsOnServerAt(m_windowAt + QPoint(96 + settlingSteps, 0)));
}

struct ThrowRow {
  const char *name;
  QPoint way;
};

class RealThrowTest : public RealInputTest, public testing::WithParamInterface<ThrowRow> {};

TEST_P(RealThrowTest, FliesBouncesAndLandsOnTheFloor) {
  const QPoint way = GetParam().way;
  press();
  // To where there is room on all sides.
  dragInSteps({-6, 6}, 8);
  dragBy(way);
  const QPoint start = window().position();
  QRect seen(start, window().size());
  const auto look = [&] { seen |= QRect(window().place().topLeft(), window().size()); };
  release();
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return motion().isFlying(); }));
  EXPECT_TRUE(scene().isTossed());
  m_screen = desktop().screenshot();
  keep(QStringLiteral("thrown-") + QString::fromLatin1(GetParam().name));
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] {
    look();
    const QPoint went = window().place().topLeft() - start;
    return QPoint::dotProduct(went, way) > 40 * 40 || !motion().isFlying();
  }));
  ASSERT_TRUE(lands());
  look();
  EXPECT_GT(
      std::max({seen.x() < start.x() ? start.x() - seen.x() : 0,
                seen.x() + seen.width() - start.x() - window().width(), start.y() - seen.y()}),
      40);
  EXPECT_FALSE(scene().isTossed());
  EXPECT_TRUE(m_workArea.contains(seen));
  EXPECT_EQ(bottom(window().geometry()), bottom(m_workArea));
  EXPECT_TRUE(standsOnServerAt(window().position()));
  EXPECT_EQ(m_interactions.taps, 0);
}

INSTANTIATE_TEST_SUITE_P(Directions, RealThrowTest,
                         testing::Values(ThrowRow{"up", {0, -40}}, ThrowRow{"left", {-40, 0}},
                                         ThrowRow{"right", {40, 0}}),
                         [](const auto &row) { return row.param.name; });

TEST_F(RealInputTest, AClickCatchesAFlyingPet) {
  press();
  dragInSteps({-6, 6}, 8);
  dragBy({0, -40});
  release();
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return motion().isFlying(); }));
  // Caught by the belly, wherever that is by the time the hand is there.
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] {
    if (motion().isFlying()) {
      clickAt(onScreen(belly()));
    }
    return !motion().isFlying();
  }));
  EXPECT_FALSE(scene().isTossed());
}

TEST_F(RealInputTest, TheWheelGrowsAndShrinksThePetAtItsLowerRightCorner) {
  const QRect before = window().geometry();
  m_pointer = evened(before.topLeft() + belly());
  hand({QStringLiteral("click"), QStringLiteral("4")});
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.petScale() > 0.85; }));
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 0.8 + 40 * 0.003);
  const int grown = window().width() - before.width();
  EXPECT_GT(grown, 0);
  EXPECT_TRUE(standsOnServerAt(before.topLeft() - QPoint(grown, grown)));
  hand(
      {QStringLiteral("click"), QStringLiteral("5"), QStringLiteral("click"), QStringLiteral("5")});
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] { return window().geometry() == before; }));
  EXPECT_TRUE(standsOnServerAt(before.topLeft()));
}

TEST_F(RealInputTest, StaysAboveAFullScreenWindowAndTakesClicksThere) {
  m_below.showFullScreen();
  m_below.raise();
  m_below.requestActivate();
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] {
    return m_below.isActive() && m_below.geometry() == m_screens.areas().front().frame;
  }));
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return isPaper(image, {image.width() - 2, image.height() - 2}) &&
           !isPaper(image, onScreen(belly()));
  }));
  keep(QStringLiteral("full-screen"));
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_TRUE(m_below.isActive());
}

TEST_F(RealInputTest, AWindowRaisedLaterStaysBelowThePet) {
  test::WindowBelow other(QColor(20, 200, 20));
  other.setGeometry(m_workArea.adjusted(20, 20, -20, -20));
  other.show();
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] { return other.isExposed(); }));
  other.requestActivate();
  other.raise();
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] { return other.isActive(); }));
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_EQ(other.clicks(), 0);
}

TEST_F(RealInputTest, LandsOnAPanelThatTakesSpaceAtTheBottom) {
  test::WindowBelow panel(QColor(20, 20, 200));
  constexpr int height = 40;
  const QRect screen = m_screens.areas().front().frame;
  panel.setGeometry(0, bottom(screen) - height, screen.width(), height);
  panel.setFlags(Qt::FramelessWindowHint);
  panel.show();
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] { return panel.isExposed(); }));
  const int pixels = qRound(height * panel.devicePixelRatio());
  static_cast<void>(desktop().output(
      QStringLiteral("xprop"),
      {QStringLiteral("-id"), QString::number(panel.winId()), QStringLiteral("-f"),
       QStringLiteral("_NET_WM_STRUT"), QStringLiteral("32c"), QStringLiteral("-set"),
       QStringLiteral("_NET_WM_STRUT"), QStringLiteral("0, 0, 0, %1").arg(pixels)}));
  ASSERT_TRUE(PrivateDesktop::waitUntil(
      [&] { return bottom(m_screens.areas().front().workArea) <= bottom(screen) - height; }));
  m_controller.throwPet({-400, -600});
  ASSERT_TRUE(lands());
  EXPECT_EQ(bottom(window().geometry()), bottom(m_screens.areas().front().workArea));
  EXPECT_TRUE(standsOnServerAt(window().position()));
  m_screen = desktop().screenshot();
  keep(QStringLiteral("on-panel"));
}

TEST_F(RealInputTest, IsCarriedAsItsOutlineWithoutACompositor) {
  desktop().stopCompositor();
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return !m_windows.isCompositing(); }));
  press();
  dragInSteps({-6, 0}, 10);
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return !isPaper(image, onScreen(belly())) && isPaper(image, onScreen({4, 4}));
  }));
  keep(QStringLiteral("carried-shaped"));
  release();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return !scene().isCarried(); }));
}

} // namespace
} // namespace morvo
