#include "RealDesktop.h"
#include "RecordedInteractions.h"
#include "WindowBelow.h"
#include "base/QtScheduler.h"
#include "pet/DesktopPetController.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/qt/QtContextMenu.h"
#include "platform/qt/QtScreens.h"
#include "support/MemorySettings.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

#include <cstdlib>

namespace morvo {
namespace {

using test::PrivateDesktop;

const QColor paper(200, 60, 160);

bool isPaper(const QImage &image, QPoint at) {
  const QColor color = image.pixelColor(at);
  return std::abs(color.red() - paper.red()) <= 2 && std::abs(color.green() - paper.green()) <= 2 &&
         std::abs(color.blue() - paper.blue()) <= 2;
}

/// A real pet on a real desktop, above a large window that has the focus.
class RealDesktopPetTest : public testing::Test {
protected:
  void SetUp() override {
    m_below.setGeometry(QGuiApplication::primaryScreen()->geometry().adjusted(0, 0, -10, -10));
    // Not quite the whole screen: window managers put a bare window that covers it above all
    // others.
    m_below.setFlags(Qt::FramelessWindowHint);
    m_below.show();
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return m_below.isExposed(); }));
    m_below.requestActivate();
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return m_below.isActive(); }));
    m_controller.setInteractions(&m_interactions);
  }
  void TearDown() override { desktop().stopCompositor(); }

  [[nodiscard]] static PrivateDesktop &desktop() { return *test::RealDesktop::desktop; }
  void startCompositor() {
    desktop().startCompositor();
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return m_windows.isCompositing(); }));
  }
  void show() {
    m_controller.show();
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return window().drawings() > 3; }));
  }
  [[nodiscard]] DesktopPetWindow &window() { return *m_controller.window(); }
  /// A point of the window in pixels of the screen.
  [[nodiscard]] QPoint onScreen(QPoint place) {
    return ((window().position() + place) * window().devicePixelRatio());
  }
  [[nodiscard]] QPoint belly() { return window().spriteRect().center() + QPoint(0, 60); }
  /// Takes screenshots until one fulfils the condition: the server shows pictures when it likes.
  [[nodiscard]] bool screenComesToShow(const std::function<bool(const QImage &)> &condition) {
    return PrivateDesktop::waitUntil([&] {
      m_screen = desktop().screenshot();
      return condition(m_screen);
    });
  }
  void clickAt(QPoint place) {
    static_cast<void>(desktop().output(QStringLiteral("xdotool"),
                                       {QStringLiteral("mousemove"), QString::number(place.x()),
                                        QString::number(place.y()), QStringLiteral("click"),
                                        QStringLiteral("1")}));
  }
  [[nodiscard]] QString property(const QString &name) {
    return desktop().output(QStringLiteral("xprop"),
                            {QStringLiteral("-id"), QString::number(window().winId()), name});
  }
  /// Keeps the last screenshot when a person wants to see what the tests saw.
  void keep(const QString &name) const {
    const QString folder = qEnvironmentVariable("MORVO_TEST_SCREENSHOTS");
    if (!folder.isEmpty()) {
      EXPECT_TRUE(m_screen.save(QDir(folder).filePath(name + QStringLiteral(".png"))));
    }
  }

  X11WindowSystem m_windows;
  QtScreens m_screens;
  QtContextMenu m_menu;
  test::WindowBelow m_below{paper};
  test::MemorySettings m_settings;
  SystemClock m_clock;
  QtScheduler m_scheduler;
  SeededRandomSource m_random{7};
  QTemporaryDir m_home;
  test::RecordedInteractions m_interactions;
  DesktopPetController m_controller{
      {{HomeFolder{m_home.path()}, QStringLiteral(MORVO_PET_RESOURCES)},
       Setting(m_settings, Environment({{QStringLiteral("MORVO_DEBUG"), QStringLiteral("1")}})),
       m_windows,
       m_screens,
       m_menu,
       m_clock,
       m_scheduler,
       m_random}};
  QImage m_screen;
};

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
