#include "companion/Personas.h"
#include "panels/PanelFixture.h"
#include "panels/PersonaFormat.h"
#include "platform/L10n.h"

#include <algorithm>

namespace morvo {
namespace {

constexpr int petTab = 2;

class PersonaMenuTest : public test::PanelFixture {
protected:
  void openMenu() {
    m_doors.newPet = [this](const QString &title) { m_begun.append(title); };
    open();
    takeTab(petTab);
    dropDown();
  }
  void dropDown() {
    QQuickItem *const opener = control(QStringLiteral("%1 · %2").arg(
        m_store->persona().name, m_store->persona().tier == 1   ? QStringLiteral("深海")
                                 : m_store->persona().tier == 3 ? QStringLiteral("二次元")
                                                                : QStringLiteral("自定义")));
    click(opener);
  }
  /// The lines of the open menu, from the top.
  [[nodiscard]] QStringList lines() const {
    QList<QQuickItem *> items;
    for (QQuickItem *item : seenItems()) {
      if (item->inherits("QQuickMenuItem") && item->height() > 0) {
        items.append(item);
      }
    }
    std::ranges::sort(items, {}, [](QQuickItem *item) { return item->mapToScene({}).y(); });
    QStringList texts;
    for (QQuickItem *item : items) {
      texts.append(item->property("text").toString());
    }
    return texts;
  }

  QStringList m_begun;
};

TEST_F(PersonaMenuTest, ListsThePresetsThenTheUsersOwnThenWhatCanBeDone) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  keepPicture(QStringLiteral("menu"));
  QStringList wanted{QStringLiteral("✓ 小沃 · 深海")};
  for (std::size_t i = 1; i < Personas::presets().size(); ++i) {
    wanted.append(Personas::presets()[i].name + QStringLiteral(" · 二次元"));
  }
  wanted += {QStringLiteral("团子 · 自定义"), QStringLiteral("＋ 新建自定义宠物…"),
             QStringLiteral("管理我的宠物…")};
  EXPECT_EQ(lines(), wanted);
}

TEST_F(PersonaMenuTest, WithoutPetsOfTheUsersOwnThereIsNothingToManage) {
  openMenu();
  EXPECT_EQ(lines().size(), static_cast<qsizetype>(Personas::presets().size()) + 1);
  EXPECT_FALSE(lines().contains(QStringLiteral("管理我的宠物…")));
}

TEST_F(PersonaMenuTest, ChoosingALineSetsThePersonaAndClosesTheMenu) {
  openMenu();
  click(control(Personas::anime().name + QStringLiteral(" · 二次元")));
  EXPECT_EQ(m_store->persona().id, Personas::anime().id);
  EXPECT_EQ(lines(), QStringList());
  dropDown();
  EXPECT_EQ(lines().mid(0, 2), QStringList({QStringLiteral("小沃 · 深海"),
                                            QStringLiteral("✓ ") + Personas::anime().name +
                                                QStringLiteral(" · 二次元")}));
}

TEST_F(PersonaMenuTest, TheKeyboardChoosesToo) {
  openMenu();
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_EQ(m_store->persona().id, Personas::anime().id);
}

TEST_F(PersonaMenuTest, EscapeClosesTheMenuAlone) {
  openMenu();
  press(Qt::Key_Escape);
  EXPECT_EQ(lines(), QStringList());
  EXPECT_TRUE(m_view->isVisible());
  EXPECT_EQ(m_store->persona().id, Personas::morvo().id);
}

TEST_F(PersonaMenuTest, ANewPetIsBegunUnderItsTitle) {
  openMenu();
  click(control(QStringLiteral("＋ 新建自定义宠物…")));
  EXPECT_EQ(m_begun, QStringList(QStringLiteral("新建桌面宠物")));
}

TEST_F(PersonaMenuTest, APetThatIsTakenAwayLeavesTheMenuInOrder) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  press(Qt::Key_Escape);
  m_store->deleteCustomPersona(QStringLiteral("custom-1"));
  settle();
  dropDown();
  EXPECT_FALSE(lines().contains(QStringLiteral("团子 · 自定义")));
  EXPECT_EQ(lines().back(), QStringLiteral("＋ 新建自定义宠物…"));
}

TEST_F(PersonaMenuTest, TheUsersOwnAreManagedRenamedAndTakenAway) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  click(control(QStringLiteral("管理我的宠物…")));
  ASSERT_NE(seen("text", QStringLiteral("团子")), nullptr);
  keepPicture(QStringLiteral("managing"));
  click(seen("symbol", QStringLiteral("pencil")));
  keepPicture(QStringLiteral("renaming"));
  QQuickItem *const field = seen("placeholderText", QStringLiteral("名字"));
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->property("text").toString(), QStringLiteral("团子"));
  field->setProperty("text", QStringLiteral("  麻薯 "));
  press(Qt::Key_Return);
  EXPECT_NE(seen("text", QStringLiteral("麻薯")), nullptr);
  EXPECT_EQ(seen("placeholderText", QStringLiteral("名字")), nullptr);
  click(control(QStringLiteral("选中")));
  EXPECT_EQ(m_store->persona().id, QStringLiteral("custom-1"));
  EXPECT_NE(seen("text", QStringLiteral("当前")), nullptr);
  click(seen("symbol", QStringLiteral("trash")));
  EXPECT_EQ(m_store->persona().id, Personas::morvo().id);
  EXPECT_EQ(seen("symbol", QStringLiteral("trash")), nullptr);
}

TEST_F(PersonaMenuTest, RenamingToWhiteSpaceLeavesTheNameAndEnds) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  click(control(QStringLiteral("管理我的宠物…")));
  click(seen("symbol", QStringLiteral("pencil")));
  seen("placeholderText", QStringLiteral("名字"))->setProperty("text", QStringLiteral(" \t"));
  click(control(QStringLiteral("保存")));
  EXPECT_EQ(seen("placeholderText", QStringLiteral("名字")), nullptr);
  EXPECT_EQ(control(QStringLiteral("保存")), nullptr);
  EXPECT_NE(seen("text", QStringLiteral("团子")), nullptr);
}

TEST_F(PersonaMenuTest, WhatIsMissingIsToldAndMadeUnlessTheRowIsBeingRenamed) {
  QStringList filled;
  m_doors.missingFrameSets = [](const QString &) {
    return QStringList{QStringLiteral("greet"), QStringLiteral("alert")};
  };
  m_doors.fillMissingAnimations = [&filled](const QString &id) { filled.append(id); };
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  click(control(QStringLiteral("管理我的宠物…")));
  const QString line = QStringLiteral("缺：greet、alert");
  EXPECT_NE(seen("text", line), nullptr);
  EXPECT_NE(seen("text", PersonaFormat::missingBadge(2, L10n::isChinese())), nullptr);
  click(control(PersonaFormat::fillLabel(false, L10n::isChinese())));
  EXPECT_EQ(filled, QStringList(QStringLiteral("custom-1")));
  click(seen("symbol", QStringLiteral("pencil")));
  EXPECT_EQ(seen("text", line), nullptr);
}

TEST_F(PersonaMenuTest, ManagingEndsAsItBegan) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  openMenu();
  click(control(QStringLiteral("管理我的宠物…")));
  EXPECT_NE(seen("symbol", QStringLiteral("trash")), nullptr);
  dropDown();
  click(control(QStringLiteral("管理我的宠物…")));
  EXPECT_EQ(seen("symbol", QStringLiteral("trash")), nullptr);
}

} // namespace
} // namespace morvo
