#include "platform/qt/AppearancePalettes.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>

namespace morvo {
namespace {

/// The luminance that contrast is measured by, 0 to 1.
double luminance(const QColor &color) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other) {
  const double first = luminance(one);
  const double second = luminance(other);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

bool isDark(const QPalette &palette) {
  return luminance(palette.color(QPalette::Window)) <
         luminance(palette.color(QPalette::WindowText));
}

/// A window that counts how often it learns of new colours.
class Window : public QWidget {
public:
  int m_changes = 0;

protected:
  void changeEvent(QEvent *event) override {
    m_changes += event->type() == QEvent::PaletteChange ? 1 : 0;
    QWidget::changeEvent(event);
  }
};

class AppearancePalettesTest : public testing::Test {
protected:
  void TearDown() override { AppearancePalettes::apply(Appearance::followSystem); }
};

TEST_F(AppearancePalettesTest, LightIsDarkOnLight) {
  AppearancePalettes::apply(Appearance::light);
  EXPECT_FALSE(isDark(QApplication::palette()));
  EXPECT_EQ(QApplication::palette().color(QPalette::Window),
            AppearancePalettes::light().color(QPalette::Window));
}

TEST_F(AppearancePalettesTest, DarkIsLightOnDark) {
  AppearancePalettes::apply(Appearance::dark);
  EXPECT_TRUE(isDark(QApplication::palette()));
  EXPECT_EQ(QApplication::palette().color(QPalette::Window),
            AppearancePalettes::dark().color(QPalette::Window));
}

TEST_F(AppearancePalettesTest, FollowingTheSystemGivesTheDesktopItsColoursBack) {
  AppearancePalettes::apply(Appearance::followSystem);
  const QPalette ofDesktop = QApplication::palette();
  for (const auto chosen : {Appearance::dark, Appearance::light}) {
    AppearancePalettes::apply(chosen);
    ASSERT_NE(QApplication::palette(), ofDesktop);
    AppearancePalettes::apply(Appearance::followSystem);
    EXPECT_EQ(QApplication::palette(), ofDesktop);
  }
}

TEST_F(AppearancePalettesTest, AWindowOnTheScreenTakesTheNewColours) {
  AppearancePalettes::apply(Appearance::light);
  Window window;
  window.show();
  QCoreApplication::processEvents();
  EXPECT_FALSE(isDark(window.palette()));
  window.m_changes = 0;
  AppearancePalettes::apply(Appearance::dark);
  QCoreApplication::processEvents();
  EXPECT_TRUE(isDark(window.palette()));
  EXPECT_GT(window.m_changes, 0);
}

TEST_F(AppearancePalettesTest, TheStyleIsOneThatKeepsToThePalette) {
  AppearancePalettes::apply(Appearance::dark);
  EXPECT_EQ(QApplication::style()->objectName(), QStringLiteral("fusion"));
}

class ReadabilityTest : public testing::TestWithParam<bool> {
protected:
  QPalette m_palette = GetParam() ? AppearancePalettes::dark() : AppearancePalettes::light();
};

TEST_P(ReadabilityTest, EachTextStandsOutFromItsGround) {
  constexpr double readable = 4.5;
  constexpr std::array pairs{std::pair(QPalette::WindowText, QPalette::Window),
                             std::pair(QPalette::Text, QPalette::Base),
                             std::pair(QPalette::Text, QPalette::AlternateBase),
                             std::pair(QPalette::ButtonText, QPalette::Button),
                             std::pair(QPalette::ToolTipText, QPalette::ToolTipBase),
                             std::pair(QPalette::HighlightedText, QPalette::Highlight),
                             std::pair(QPalette::Link, QPalette::Base)};
  for (const auto &[text, ground] : pairs) {
    EXPECT_GE(contrast(m_palette.color(text), m_palette.color(ground)), readable)
        << "role " << text << " on " << ground;
  }
}

TEST_P(ReadabilityTest, WhatIsDisabledIsFainterYetVisible) {
  constexpr double visible = 3;
  const auto ground = m_palette.color(QPalette::Disabled, QPalette::Window);
  const double disabled =
      contrast(m_palette.color(QPalette::Disabled, QPalette::WindowText), ground);
  EXPECT_LT(disabled, contrast(m_palette.color(QPalette::WindowText), ground));
  EXPECT_GE(disabled, visible);
}

INSTANTIATE_TEST_SUITE_P(Palettes, ReadabilityTest, testing::Bool(),
                         [](const auto &info) { return info.param ? "Dark" : "Light"; });

} // namespace
} // namespace morvo
