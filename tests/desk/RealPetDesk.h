#pragma once

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

#include <algorithm>
#include <cstdlib>

namespace morvo::test {

/// A real pet on a real desktop, above a large window that has the focus.
class RealPetDesk : public testing::Test {
protected:
  static inline const QColor paper{200, 60, 160};

  static bool isPaper(const QImage &image, QPoint at) {
    const QColor color = image.pixelColor(at);
    return std::abs(color.red() - paper.red()) <= 2 &&
           std::abs(color.green() - paper.green()) <= 2 &&
           std::abs(color.blue() - paper.blue()) <= 2;
  }

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

  [[nodiscard]] static PrivateDesktop &desktop() { return *RealDesktop::desktop; }
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
  [[nodiscard]] QPoint onScreen(QPoint place) { return pixelAt(window().position() + place); }
  /// A point of the desktop in pixels of the screen. Each monitor begins where its pixels do.
  [[nodiscard]] static QPoint pixelAt(QPoint point) {
    const QScreen *under = QGuiApplication::screenAt(point);
    const QScreen *screen = under != nullptr ? under : QGuiApplication::primaryScreen();
    const QPointF origin = screen->geometry().topLeft();
    return (origin + (point - origin) * screen->devicePixelRatio()).toPoint();
  }
  [[nodiscard]] QPoint belly() {
    return window().spriteRect().center() + QPoint(0, window().spriteRect().height() / 5);
  }
  /// Takes screenshots until one fulfils the condition: the server shows pictures when it likes.
  [[nodiscard]] bool screenComesToShow(const std::function<bool(const QImage &)> &condition) {
    return PrivateDesktop::waitUntil([&] {
      m_screen = desktop().screenshot();
      return condition(m_screen);
    });
  }
  void clickAt(QPoint place, int button = 1) {
    static_cast<void>(desktop().output(QStringLiteral("xdotool"),
                                       {QStringLiteral("mousemove"), QString::number(place.x()),
                                        QString::number(place.y()), QStringLiteral("click"),
                                        QString::number(button)}));
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
  WindowBelow m_below{paper};
  MemorySettings m_settings;
  SystemClock m_clock;
  QtScheduler m_scheduler;
  SeededRandomSource m_random{7};
  QTemporaryDir m_home;
  RecordedInteractions m_interactions;
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

} // namespace morvo::test
