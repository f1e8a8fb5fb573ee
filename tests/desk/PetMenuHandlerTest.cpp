#include "PetDesk.h"
#include "platform/SettingKeys.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

class PetMenuHandlerTest : public test::PetDesk {
protected:
  PetMenuHandlerTest() { shown(); }

  void open() { m_controller->showContextMenu({640, 400}); }
  void choose(const QString &title) {
    open();
    m_menu.choose(title);
  }
};

TEST_F(PetMenuHandlerTest, ListsItsEntriesInTheirOrder) {
  open();
  EXPECT_EQ(
      test::FakeContextMenu::titles(m_menu.entries),
      QStringList({QStringLiteral("行为模式"),    QStringLiteral("🟢 自然陪伴  ✓"),
                   QStringLiteral("🟠 活泼玩耍"), QStringLiteral("🔵 安静休息"),
                   QStringLiteral("---"),         QStringLiteral("按住拖动拎起来 ✋ · 快甩抛出去"),
                   QStringLiteral("---"),         QStringLiteral("摸摸它"),
                   QStringLiteral("散个步"),      QStringLiteral("回到身边"),
                   QStringLiteral("随机表演"),    QStringLiteral("喂食"),
                   QStringLiteral("做动作…"),     QStringLiteral("换形象"),
                   QStringLiteral("---"),         QStringLiteral("放大"),
                   QStringLiteral("缩小"),        QStringLiteral("---"),
                   QStringLiteral("藏起来"),      QStringLiteral("退出")}));
  EXPECT_EQ(m_menu.at, QPoint(640, 400));
}

TEST_F(PetMenuHandlerTest, TheHeaderAndTheHintCannotBeChosen) {
  open();
  EXPECT_FALSE(m_menu.entry(QStringLiteral("行为模式")).isEnabled());
  EXPECT_FALSE(m_menu.entry(QStringLiteral("按住拖动拎起来 ✋ · 快甩抛出去")).isEnabled());
  for (const QString &title : {QStringLiteral("摸摸它"), QStringLiteral("做动作…"),
                               QStringLiteral("换形象"), QStringLiteral("退出")}) {
    EXPECT_TRUE(m_menu.entry(title).isEnabled()) << title.toStdString();
  }
}

struct ModeRow {
  const char *title;
  const char *raw;
};

class PetMenuModeTest : public PetMenuHandlerTest, public testing::WithParamInterface<ModeRow> {};

TEST_P(PetMenuModeTest, IsStoredAndTicked) {
  const QString title = QString::fromUtf8(GetParam().title);
  m_settings.set(SettingKeys::behaviorMode, QStringLiteral("something else"));
  // Whichever is ticked, its title is another one then.
  m_settings.set(SettingKeys::behaviorMode, QLatin1StringView(GetParam().raw) == u"rest"
                                                ? QStringLiteral("playful")
                                                : QStringLiteral("rest"));
  choose(title);
  EXPECT_EQ(m_settings.object(SettingKeys::behaviorMode)->toString(),
            QString::fromLatin1(GetParam().raw));
  open();
  EXPECT_TRUE(m_menu.entry(title + QStringLiteral("  ✓")).isEnabled());
  EXPECT_EQ(test::FakeContextMenu::titles(m_menu.entries).filter(QStringLiteral("✓")).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Modes, PetMenuModeTest,
                         testing::Values(ModeRow{"🟢 自然陪伴", "natural"},
                                         ModeRow{"🟠 活泼玩耍", "playful"},
                                         ModeRow{"🔵 安静休息", "rest"}));

TEST_F(PetMenuHandlerTest, RestingEndsAStroll) {
  m_controller->window()->moveTo({100, 300});
  m_controller->strollRandom();
  ASSERT_TRUE(m_controller->motion()->isStrolling());
  choose(QStringLiteral("🔵 安静休息"));
  EXPECT_FALSE(m_controller->motion()->isStrolling());
}

TEST_F(PetMenuHandlerTest, TheOtherModesLetAStrollGoOn) {
  m_controller->window()->moveTo({100, 300});
  m_controller->strollRandom();
  choose(QStringLiteral("🟠 活泼玩耍"));
  EXPECT_TRUE(m_controller->motion()->isStrolling());
}

TEST_F(PetMenuHandlerTest, TellsWhoeverOwnsThePet) {
  choose(QStringLiteral("摸摸它"));
  choose(QStringLiteral("随机表演"));
  choose(QStringLiteral("喂食"));
  choose(QStringLiteral("退出"));
  EXPECT_EQ(m_interactions.taps, 1);
  EXPECT_EQ(m_interactions.tricks, 1);
  EXPECT_EQ(m_interactions.feeds, 1);
  EXPECT_EQ(m_interactions.quits, 1);
}

TEST_F(PetMenuHandlerTest, WalksAndComesWhenTold) {
  m_controller->window()->moveTo({100, 300});
  choose(QStringLiteral("散个步"));
  EXPECT_TRUE(m_controller->motion()->isStrolling());
  m_screens.pointerAt = {900, 10};
  choose(QStringLiteral("回到身边"));
  m_scheduler.advance(seconds(7));
  EXPECT_EQ(m_controller->window()->x(), 900 - m_controller->window()->width() / 2);
}

TEST_F(PetMenuHandlerTest, GrowsAndShrinksByAFifth) {
  m_interactions.setPetScale(1.4);
  choose(QStringLiteral("放大"));
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 1.6);
  choose(QStringLiteral("缩小"));
  choose(QStringLiteral("缩小"));
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 1.2);
}

TEST_F(PetMenuHandlerTest, TheLargestPetStaysAsItIsWhenItShallGrow) {
  m_interactions.setPetScale(2.4);
  const QRect before = m_controller->window()->geometry();
  choose(QStringLiteral("放大"));
  EXPECT_DOUBLE_EQ(m_interactions.petScale(), 2.4);
  EXPECT_EQ(m_controller->window()->geometry(), before);
}

TEST_F(PetMenuHandlerTest, HidesThePetAndChangesNoSetting) {
  choose(QStringLiteral("藏起来"));
  EXPECT_FALSE(m_controller->isVisible());
  EXPECT_FALSE(m_settings.object(SettingKeys::desktopPet));
  m_controller->show();
  EXPECT_TRUE(m_controller->isVisible());
}

TEST_F(PetMenuHandlerTest, ListsThePetsAndTicksThePresentOne) {
  m_interactions.choices = {{QStringLiteral("morvo"), QStringLiteral("默沃"), false},
                            {QStringLiteral("anime"), QStringLiteral("小栞"), true},
                            {QStringLiteral("custom-1"), QStringLiteral("我的 & 你的"), false}};
  open();
  EXPECT_EQ(test::FakeContextMenu::titles(m_menu.entry(QStringLiteral("换形象")).entries),
            QStringList(
                {QStringLiteral("默沃"), QStringLiteral("小栞 ✓"), QStringLiteral("我的 & 你的")}));
  m_menu.choose(QStringLiteral("我的 & 你的"));
  EXPECT_EQ(m_interactions.chosen, QStringList{QStringLiteral("custom-1")});
}

TEST_F(PetMenuHandlerTest, ForgetsItsEntriesWithWhomTheyTell) {
  open();
  m_controller->setInteractions(nullptr);
  EXPECT_TRUE(m_menu.entries.empty());
  m_controller->showContextMenu({1, 1});
  EXPECT_TRUE(m_menu.entries.empty());
}

struct ActionRow {
  const char *name;
  PetMenuAction action;
  QString title;
  QStringList played;
  QStringList replies;
};

/// A menu over a catalogue as the test wishes.
class PetMenuActionTest : public testing::TestWithParam<ActionRow> {
protected:
  [[nodiscard]] std::vector<ContextMenu::Entry> entries() {
    return m_handler.entries(m_interactions);
  }

  std::vector<PetMenuAction> m_catalog;
  test::RecordedInteractions m_interactions;
  PetMenuHandler m_handler{{.behaviorMode = [] { return PetBehaviorMode::natural; },
                            .setBehaviorMode = [](PetBehaviorMode) {},
                            .catalogActions = [this] { return m_catalog; },
                            .stroll = [] {},
                            .comeHere = [] {},
                            .hide = [] {}}};
};

TEST_P(PetMenuActionTest, SaysWhatItIsAndPlaysIt) {
  m_catalog = {GetParam().action};
  test::FakeContextMenu menu;
  menu.popUp(entries(), {});
  const auto &actions = menu.entry(QStringLiteral("做动作…")).entries;
  ASSERT_EQ(test::FakeContextMenu::titles(actions), QStringList{GetParam().title});
  EXPECT_TRUE(actions.front().isEnabled());
  actions.front().choose();
  EXPECT_EQ(m_interactions.actions, GetParam().played);
  EXPECT_EQ(m_interactions.replies, GetParam().replies);
}

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

INSTANTIATE_TEST_SUITE_P(
    Rows, PetMenuActionTest,
    testing::Values(ActionRow{"aOneshot",
                              {text("wave"), text("greet"), text("打招呼"), true, false},
                              text("打招呼"),
                              {text("greet")},
                              {}},
                    ActionRow{"aLoop",
                              {text("code"), text("code"), text("写代码"), true, true},
                              text("写代码（循环）"),
                              {text("code")},
                              {}},
                    ActionRow{"theIdleLoop",
                              {text("rest"), text("idle"), text("待着"), true, true},
                              text("待着（待机）"),
                              {text("idle")},
                              {}},
                    ActionRow{"withoutFrames",
                              {text("fly"), text("fly"), text("飞"), false, false},
                              text("飞（未生成）"),
                              {},
                              {text("「飞（未生成）」还没生成动画帧")}},
                    ActionRow{"anIdleWithoutFrames",
                              {text("idle"), text("idle"), text("待着"), false, true},
                              text("待着（未生成）"),
                              {},
                              {text("「待着（未生成）」还没生成动画帧")}},
                    ActionRow{"withoutAName",
                              {text("x"), {}, text("无名"), true, false},
                              text("无名"),
                              {},
                              {text("动作参数丢失")}}),
    [](const auto &row) { return row.param.name; });

TEST_F(PetMenuActionTest, StrangersNamesAreShortAndOnOneLine) {
  const QString endless(20000, u'长');
  const QString shown = QString(40, u'长') + QStringLiteral("……");
  const QString torn = QStringLiteral("打\t招\n呼  ❤️");
  m_catalog = {{endless, endless, endless, true, true}, {text("x"), text("x"), torn, true, false}};
  m_interactions.choices = {{text("custom-1"), endless, true}, {text("custom-2"), torn, false}};
  test::FakeContextMenu menu;
  menu.popUp(entries(), {});
  EXPECT_EQ(test::FakeContextMenu::titles(menu.entry(text("做动作…")).entries),
            QStringList({shown + text("（循环）"), text("打 招 呼 ❤️")}));
  EXPECT_EQ(test::FakeContextMenu::titles(menu.entry(text("换形象")).entries),
            QStringList({shown + text(" ✓"), text("打 招 呼 ❤️")}));
  menu.choose(shown + text("（循环）"));
  EXPECT_EQ(m_interactions.actions, QStringList{endless});
}

TEST_F(PetMenuActionTest, AnEmptyCatalogueHasNoSubmenu) {
  EXPECT_FALSE(test::FakeContextMenu::titles(entries()).contains(QStringLiteral("做动作…")));
}

} // namespace
} // namespace morvo
