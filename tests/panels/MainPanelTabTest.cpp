#include "panels/MainPanelTab.h"

#include "panels/MonitorToggle.h"
#include "panels/PanelFrame.h"
#include "panels/SymbolPainter.h"
#include "platform/SettingKeys.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

MainPanelTab opening(const QHash<QString, QString> &variables) {
  return MainPanelTabs::opening(Environment(variables));
}

TEST(MainPanelTabTest, StandInTheirOrderWithTheirLabelsAndSymbols) {
  QStringList labels;
  QStringList symbols;
  for (const MainPanelTab tab : MainPanelTabs::all) {
    labels.append(MainPanelTabs::label(tab));
    symbols.append(MainPanelTabs::symbol(tab));
  }
  EXPECT_EQ(labels,
            QStringList({QStringLiteral("对话"), QStringLiteral("监控"), QStringLiteral("宠物")}));
  EXPECT_EQ(symbols, QStringList({QStringLiteral("bubble.left.and.bubble.right"),
                                  QStringLiteral("chart.bar"), QStringLiteral("pawprint")}));
}

TEST(MainPanelTabTest, OpensTheChatUnlessToldOtherwise) {
  EXPECT_EQ(opening({}), MainPanelTab::chat);
  EXPECT_EQ(opening({{QStringLiteral("MORVO_SHOW_PANEL"), QStringLiteral("1")}}),
            MainPanelTab::chat);
}

TEST(MainPanelTabTest, TheDrawerVariableMustBeExactlyOne) {
  const QString name = QStringLiteral("MORVO_DRAWER");
  EXPECT_EQ(opening({{name, QStringLiteral("1")}}), MainPanelTab::monitor);
  EXPECT_EQ(opening({{name, QStringLiteral("true")}}), MainPanelTab::chat);
  EXPECT_EQ(opening({{name, QStringLiteral(" 1")}}), MainPanelTab::chat);
}

TEST(MainPanelTabTest, TheShowVariableIsLowerCased) {
  const QString name = QStringLiteral("MORVO_SHOW_PANEL");
  EXPECT_EQ(opening({{name, QStringLiteral("PET")}}), MainPanelTab::pet);
  EXPECT_EQ(opening({{name, QStringLiteral("Drawer")}}), MainPanelTab::monitor);
  EXPECT_EQ(opening({{name, QStringLiteral("pets")}}), MainPanelTab::chat);
}

TEST(MainPanelTabTest, TheDrawerVariableComesFirst) {
  EXPECT_EQ(opening({{QStringLiteral("MORVO_DRAWER"), QStringLiteral("1")},
                     {QStringLiteral("MORVO_SHOW_PANEL"), QStringLiteral("pet")}}),
            MainPanelTab::monitor);
}

TEST(PanelFrameTest, LeavesRoomOnASmallScreenAndGrowsNoFurtherOnALargeOne) {
  EXPECT_EQ(PanelFrame::width, 340);
  EXPECT_EQ(PanelFrame::height(500), 380);
  EXPECT_EQ(PanelFrame::height(700), 580);
  EXPECT_EQ(PanelFrame::height(699), 579);
  EXPECT_EQ(PanelFrame::height(2000), 580);
  EXPECT_EQ(PanelFrame::height(std::nullopt), 580);
  EXPECT_EQ(PanelFrame::height(100), 0);
}

TEST(MonitorToggleTest, NamesTheFourSettingsInTheirOrder) {
  QStringList keys;
  QStringList labels;
  QStringList hints;
  for (const MonitorToggle &toggle : MonitorToggles::all()) {
    keys.append(toggle.key);
    labels.append(toggle.label);
    hints.append(toggle.hint);
  }
  EXPECT_EQ(keys, QStringList({SettingKeys::captureUsage, SettingKeys::preciseEvents,
                               SettingKeys::fleet, SettingKeys::notifications}));
  EXPECT_EQ(labels,
            QStringList({QStringLiteral("读本机用量"), QStringLiteral("处理完成 / 需拍板事件"),
                         QStringLiteral("会话目录启发式（实验）"), QStringLiteral("系统通知")}));
  EXPECT_EQ(hints,
            QStringList(
                {QStringLiteral(
                     "会递归读 ~/.claude、~/.codex 日志，可能弹文件夹权限。默认关；打开后才扫。"
                     "与宠物无关。"),
                 QStringLiteral("总闸。关后即使已写 Hook 也不反应、不通知"),
                 QStringLiteral("用 jsonl 是否在写猜「谁在跑」— 不可靠，默认关，且不进监控主界面"),
                 QStringLiteral("仅任务完成 / 需你拍板；额度紧只显示在面板")}));
}

TEST(MonitorToggleTest, UnstoredTogglesReadAsTheirUsersDo) {
  const auto toggles = MonitorToggles::all();
  EXPECT_FALSE(toggles[0].fallback);
  EXPECT_TRUE(toggles[1].fallback);
  EXPECT_FALSE(toggles[2].fallback);
  EXPECT_TRUE(toggles[3].fallback);
}

} // namespace
} // namespace morvo
