#include "RealPetDesk.h"
#include "platform/SettingKeys.h"

#include <QApplication>

namespace morvo {
namespace {

using test::PrivateDesktop;

/// A right click on a real pet, and clicks on the menu that it opens.
class RealMenuTest : public test::RealPetDesk {
protected:
  void SetUp() override {
    RealPetDesk::SetUp();
    m_interactions.onScale = [this](double scale) { m_controller.setScale(scale); };
    startCompositor();
    show();
  }
  void TearDown() override {
    m_menu.close();
    RealPetDesk::TearDown();
  }

  [[nodiscard]] static QMenu *shownMenu() {
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
  }
  [[nodiscard]] bool open() {
    clickAt(onScreen(belly()), 3);
    return PrivateDesktop::waitUntil([] { return shownMenu() != nullptr; });
  }
  /// Clicks the entry of the menu on top.
  void click(const QString &title) {
    const QMenu *menu = shownMenu();
    ASSERT_NE(menu, nullptr);
    const auto actions = menu->actions();
    const auto action = std::ranges::find_if(
        actions, [&title](const QAction *candidate) { return candidate->text() == title; });
    ASSERT_NE(action, actions.end()) << title.toStdString();
    clickAt(menu->mapToGlobal(menu->actionGeometry(*action).center()) * menu->devicePixelRatioF());
  }
  void choose(const QString &title) {
    ASSERT_TRUE(open());
    click(title);
    ASSERT_TRUE(PrivateDesktop::waitUntil([] { return shownMenu() == nullptr; }));
  }
  void chooseInside(const QString &submenu, const QString &title) {
    ASSERT_TRUE(open());
    const QMenu *outer = shownMenu();
    click(submenu);
    ASSERT_TRUE(PrivateDesktop::waitUntil(
        [outer] { return shownMenu() != nullptr && shownMenu() != outer; }));
    m_screen = desktop().screenshot();
    click(title);
    ASSERT_TRUE(PrivateDesktop::waitUntil([] { return shownMenu() == nullptr; }));
  }
  [[nodiscard]] QString mode() {
    return m_settings.object(SettingKeys::behaviorMode).value_or(QVariant()).toString();
  }
};

TEST_F(RealMenuTest, OpensOnARightClickAndTakesNoFocusFromTheWindowInUse) {
  ASSERT_TRUE(open());
  m_screen = desktop().screenshot();
  keep(QStringLiteral("menu"));
  EXPECT_EQ(shownMenu()->actions().size(), 20);
  EXPECT_EQ(m_interactions.taps, 0);
  EXPECT_EQ(
      desktop().output(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")}).trimmed(),
      QString::number(m_below.winId()));
}

TEST_F(RealMenuTest, AClickElsewhereClosesItAndDoesNothing) {
  ASSERT_TRUE(open());
  clickAt({20, 20});
  EXPECT_TRUE(PrivateDesktop::waitUntil([] { return shownMenu() == nullptr; }));
  EXPECT_EQ(m_interactions.taps, 0);
}

TEST_F(RealMenuTest, ASecondRightClickOpensItAnew) {
  ASSERT_TRUE(open());
  clickAt({20, 20});
  ASSERT_TRUE(PrivateDesktop::waitUntil([] { return shownMenu() == nullptr; }));
  EXPECT_TRUE(open());
}

TEST_F(RealMenuTest, TheModesAreChosenByClicks) {
  choose(QStringLiteral("🟠 活泼玩耍"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return mode() == u"playful"; }));
  choose(QStringLiteral("🔵 安静休息"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return mode() == u"rest"; }));
  choose(QStringLiteral("🟢 自然陪伴"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return mode() == u"natural"; }));
}

TEST_F(RealMenuTest, PettingFeedingAndTricksReachTheOwner) {
  choose(QStringLiteral("摸摸它"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
  choose(QStringLiteral("喂食"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.feeds == 1; }));
  choose(QStringLiteral("随机表演"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.tricks == 1; }));
  choose(QStringLiteral("退出"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.quits == 1; }));
}

TEST_F(RealMenuTest, WalksWhenToldAndStaysOnItsLine) {
  const QPoint start = window().position();
  choose(QStringLiteral("散个步"));
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return m_controller.motion()->isStrolling(); }));
  EXPECT_TRUE(m_controller.scene().isGaitActive());
  m_screen = desktop().screenshot();
  keep(QStringLiteral("strolling"));
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return !m_controller.motion()->isStrolling(); }));
  // The default place has room on its left alone.
  EXPECT_LT(window().x(), start.x() - 60);
  EXPECT_EQ(window().y(), start.y());
  EXPECT_EQ(m_controller.scene().facing(), -1);
}

TEST_F(RealMenuTest, ComesToThePointer) {
  ASSERT_TRUE(open());
  click(QStringLiteral("回到身边"));
  ASSERT_TRUE(PrivateDesktop::waitUntil([] { return shownMenu() == nullptr; }));
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] {
    const int middle = window().x() + window().width() / 2;
    return !m_controller.motion()->isStrolling() && std::abs(middle - m_screens.pointer().x()) <= 9;
  }));
}

TEST_F(RealMenuTest, GrowsAndShrinks) {
  m_interactions.setPetScale(1.0);
  choose(QStringLiteral("放大"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return window().width() == 272; }));
  choose(QStringLiteral("缩小"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return window().width() == 232; }));
}

TEST_F(RealMenuTest, PlaysTheChosenAction) {
  const auto catalog = m_controller.catalogActions();
  const auto greet = std::ranges::find(catalog, QStringLiteral("greet"), &PetMenuAction::frameSet);
  ASSERT_NE(greet, catalog.end());
  chooseInside(QStringLiteral("做动作…"), greet->label);
  keep(QStringLiteral("menu-actions"));
  EXPECT_TRUE(PrivateDesktop::waitUntil(
      [this] { return m_interactions.actions == QStringList{QStringLiteral("greet")}; }));
}

TEST_F(RealMenuTest, PutsTheChosenPetInPlace) {
  m_interactions.choices.push_back({QStringLiteral("custom-1"), QStringLiteral("团子"), false});
  chooseInside(QStringLiteral("换形象"), QStringLiteral("团子"));
  EXPECT_TRUE(PrivateDesktop::waitUntil(
      [this] { return m_interactions.chosen == QStringList{QStringLiteral("custom-1")}; }));
}

TEST_F(RealMenuTest, HidesThePet) {
  choose(QStringLiteral("藏起来"));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return !m_controller.isVisible(); }));
}

} // namespace
} // namespace morvo
