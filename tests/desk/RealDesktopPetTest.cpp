#include "RealPetDesk.h"

namespace morvo {
namespace {

using test::PrivateDesktop;
using RealDesktopPetTest = test::RealPetDesk;

TEST_F(RealDesktopPetTest, IsSeenThroughWhereItIsEmptyAndBlendedWhereItGlows) {
  startCompositor();
  show();
  m_controller.setBubble(QStringLiteral("做完啦，水面一下子亮了起来 🎉（轻轻吐个泡泡）"));
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return !isPaper(image, onScreen(belly())) && !isPaper(image, onScreen({156, 110})) &&
           isPaper(image, onScreen({4, 4})) && isPaper(image, onScreen({4, 150}));
  }));
  keep(QStringLiteral("composited"));
}

TEST_F(RealDesktopPetTest, TakesNoFocusWhenShownNorWhenClicked) {
  startCompositor();
  show();
  EXPECT_EQ(QGuiApplication::focusWindow(), &m_below);
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_EQ(QGuiApplication::focusWindow(), &m_below);
  EXPECT_TRUE(
      desktop().output(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")}).trimmed() ==
      QString::number(m_below.winId()));
}

TEST_F(RealDesktopPetTest, AClickOnThePetReachesThePetAlone) {
  startCompositor();
  show();
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_EQ(m_below.clicks(), 0);
}

TEST_F(RealDesktopPetTest, AFaintPetStillTakesClicks) {
  startCompositor();
  m_controller.setOpacity(0);
  show();
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
}

struct FaintRow {
  const char *name;
  int alpha;
  double opacity;
};

/// A pet through which the desktop shines everywhere, in a glow of a third of that.
class FaintPetTest : public RealDesktopPetTest, public testing::WithParamInterface<FaintRow> {
protected:
  void showFaintPet() {
    const QString folder = m_home.path() + QStringLiteral("/.morvo/pets/custom-1/idle/");
    ASSERT_TRUE(QDir().mkpath(folder));
    QImage frame(20, 20, QImage::Format_ARGB32);
    frame.fill(QColor(0, 0, 255, GetParam().alpha / 3));
    for (int y = 5; y < 20; ++y) {
      for (int x = 5; x < 15; ++x) {
        frame.setPixelColor(x, y, QColor(0, 0, 255, GetParam().alpha));
      }
    }
    for (const QString &name : {QStringLiteral("1.png"), QStringLiteral("2.png")}) {
      ASSERT_TRUE(frame.save(folder + name, "PNG"));
    }
    m_controller.setPersona(QStringLiteral("custom-1"));
    m_controller.setOpacity(GetParam().opacity);
    show();
  }
  [[nodiscard]] QPoint glow() {
    return {window().spriteRect().x() + window().spriteRect().width() / 8, belly().y()};
  }
};

TEST_P(FaintPetTest, TakesClicksWhereItIsNotOnlyItsGlow) {
  startCompositor();
  ASSERT_NO_FATAL_FAILURE(showFaintPet());
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  clickAt(onScreen(glow()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_below.clicks() == 1; }));
  // Hearts are stronger than the pet, and no measure of it.
  m_controller.emitHearts();
  const std::uint64_t before = window().drawings();
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] { return window().drawings() > before + 8; }));
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 2; }));
}

TEST_P(FaintPetTest, IsSeenWithoutACompositor) {
  ASSERT_FALSE(m_windows.isCompositing());
  ASSERT_NO_FATAL_FAILURE(showFaintPet());
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return !isPaper(image, onScreen(belly())) && isPaper(image, onScreen(glow()));
  }));
  keep(QStringLiteral("shaped-") + QString::fromLatin1(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(All, FaintPetTest,
                         testing::Values(FaintRow{"solid", 255, 1}, FaintRow{"faint", 100, 1},
                                         FaintRow{"faded", 255, 0.3},
                                         FaintRow{"faintAndFaded", 100, 0.5}),
                         [](const auto &row) { return row.param.name; });

TEST_F(RealDesktopPetTest, AClickBesideThePetReachesTheWindowBelow) {
  startCompositor();
  show();
  clickAt(onScreen({4, 150}));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_below.clicks() == 1; }));
  clickAt(onScreen({156, 60}));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_below.clicks() == 2; }));
  EXPECT_EQ(m_interactions.taps, 0);
}

TEST_F(RealDesktopPetTest, AClickOnTheBubbleReachesThePet) {
  startCompositor();
  show();
  m_controller.setBubble(QStringLiteral("摸摸我"));
  EXPECT_TRUE(screenComesToShow(
      [this](const QImage &image) { return !isPaper(image, onScreen({156, 110})); }));
  clickAt(onScreen({156, 110}));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  EXPECT_EQ(m_below.clicks(), 0);
}

TEST_F(RealDesktopPetTest, StandsOnAllWorkspacesAndInNoTaskBar) {
  startCompositor();
  show();
  EXPECT_TRUE(property(QStringLiteral("_NET_WM_DESKTOP")).contains(QStringLiteral("4294967295")));
  const QString states = property(QStringLiteral("_NET_WM_STATE"));
  for (const QString &state :
       {QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR"), QStringLiteral("_NET_WM_STATE_SKIP_PAGER"),
        QStringLiteral("_NET_WM_STATE_ABOVE")}) {
    EXPECT_TRUE(states.contains(state)) << states.toStdString();
  }
  static_cast<void>(desktop().output(QStringLiteral("xdotool"),
                                     {QStringLiteral("set_num_desktops"), QStringLiteral("2"),
                                      QStringLiteral("set_desktop"), QStringLiteral("1")}));
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    // The other workspace does not show the window below, but the pet it does.
    return !isPaper(image, {10, 10}) &&
           image.pixelColor(onScreen(belly())) != image.pixelColor(10, 10);
  }));
  static_cast<void>(desktop().output(QStringLiteral("xdotool"),
                                     {QStringLiteral("set_desktop"), QStringLiteral("0")}));
}

TEST_F(RealDesktopPetTest, StandsBeneathAPanelThatIsOpenAndAboveItAgainAfterwards) {
  const QColor cloth(40, 160, 90);
  startCompositor();
  show();
  test::WindowBelow panel(cloth);
  panel.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
  panel.setGeometry(window().geometry().adjusted(-20, -20, 20, -40));
  panel.show();
  const auto showsPanel = [&](const QImage &image) {
    return image.pixelColor(onScreen(belly())) == cloth;
  };
  EXPECT_TRUE(screenComesToShow([&](const QImage &image) {
    return image.pixelColor(onScreen({4, 4})) == cloth && !showsPanel(image);
  }));
  m_controller.standBeneath(&panel);
  EXPECT_TRUE(screenComesToShow(showsPanel));
  // Above all that is beneath the panel.
  EXPECT_FALSE(isPaper(m_screen, onScreen(window().spriteRect().center() +
                                          QPoint(0, window().spriteRect().height() / 2 - 20))));
  m_controller.setVisible(false);
  show();
  EXPECT_TRUE(screenComesToShow(showsPanel));
  m_controller.standBeneath(nullptr);
  EXPECT_TRUE(screenComesToShow([&](const QImage &image) { return !showsPanel(image); }));
}

TEST_F(RealDesktopPetTest, IsCutToItsOutlineWithoutACompositor) {
  ASSERT_FALSE(m_windows.isCompositing());
  show();
  m_controller.setBubble(QStringLiteral("没有合成器也好好的"));
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return !isPaper(image, onScreen(belly())) && !isPaper(image, onScreen({156, 110})) &&
           isPaper(image, onScreen({4, 4})) && isPaper(image, onScreen({4, 400})) &&
           isPaper(image, onScreen({156, 60}));
  }));
  keep(QStringLiteral("shaped"));
}

TEST_F(RealDesktopPetTest, FollowsACompositorThatComesAndGoes) {
  show();
  EXPECT_FALSE(m_windows.isCompositing());
  startCompositor();
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return isPaper(image, onScreen({4, 4})) && !isPaper(image, onScreen(belly()));
  }));
  desktop().stopCompositor();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return !m_windows.isCompositing(); }));
  EXPECT_TRUE(screenComesToShow([this](const QImage &image) {
    return isPaper(image, onScreen({4, 4})) && !isPaper(image, onScreen(belly()));
  }));
}

} // namespace
} // namespace morvo
