#include "platform/qt/QtContextMenu.h"

#include <QApplication>

#include <gmock/gmock.h>

namespace morvo {
namespace {

class QtContextMenuTest : public testing::Test {
protected:
  void popUp(std::vector<ContextMenu::Entry> entries) {
    m_menu.popUp(std::move(entries), {10, 10});
  }
  /// Those of the open menu.
  [[nodiscard]] static QList<QAction *> actions() {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      auto *menu = qobject_cast<QMenu *>(widget);
      if (menu != nullptr && menu->isVisible()) {
        return menu->actions();
      }
    }
    return {};
  }
  ContextMenu::Entry counted(const QString &title) {
    return {.title = title, .choose = [this] { ++m_chosen; }, .entries = {}};
  }

  QtContextMenu m_menu;
  int m_chosen = 0;
};

TEST_F(QtContextMenuTest, WhatIsChosenIsCalledAfterTheMenuHasClosed) {
  popUp({counted(QStringLiteral("one"))});
  actions().at(0)->trigger();
  EXPECT_EQ(m_chosen, 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(m_chosen, 1);
}

TEST_F(QtContextMenuTest, WhatWasChosenIsNotCalledOnceTheMenuIsTakenAway) {
  popUp({counted(QStringLiteral("one"))});
  actions().at(0)->trigger();
  m_menu.close();
  QCoreApplication::processEvents();
  EXPECT_EQ(m_chosen, 0);
}

TEST_F(QtContextMenuTest, TheNextMenuIsOfNoUseToWhatWasChosenInTheFirst) {
  popUp({counted(QStringLiteral("one"))});
  actions().at(0)->trigger();
  popUp({counted(QStringLiteral("two"))});
  QCoreApplication::processEvents();
  EXPECT_EQ(m_chosen, 0);
  ASSERT_EQ(actions().size(), 1);
  EXPECT_EQ(actions().at(0)->text(), QStringLiteral("two"));
}

TEST_F(QtContextMenuTest, AnEntryWithoutATitleCanBeChosen) {
  popUp({counted({}), {}, counted(QStringLiteral("&x"))});
  ASSERT_EQ(actions().size(), 3);
  EXPECT_FALSE(actions().at(0)->isSeparator());
  EXPECT_TRUE(actions().at(1)->isSeparator());
  EXPECT_EQ(actions().at(2)->text(), QStringLiteral("&&x"));
  actions().at(0)->trigger();
  QCoreApplication::processEvents();
  EXPECT_EQ(m_chosen, 1);
}

} // namespace
} // namespace morvo
