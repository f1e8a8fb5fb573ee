#include "panels/ChatMessagesModel.h"

#include "panels/SignalCount.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

ChatMessage message(const QString &text, ChatMessage::Role role = ChatMessage::Role::pet) {
  return {.role = role, .text = text};
}

class ChatMessagesModelTest : public testing::Test {
protected:
  ChatMessagesModel m_model;
  test::SignalCount m_inserted{&m_model, &QAbstractItemModel::rowsInserted};
  test::SignalCount m_removed{&m_model, &QAbstractItemModel::rowsRemoved};
  test::SignalCount m_changed{&m_model, &QAbstractItemModel::dataChanged};

  [[nodiscard]] QString text(int row) const {
    return m_model.data(m_model.index(row), ChatMessagesModel::TextRole).toString();
  }
};

TEST_F(ChatMessagesModelTest, TellsWhatWasSaidAndByWhom) {
  m_model.show(
      {message(QStringLiteral("早")), message(QStringLiteral("在吗"), ChatMessage::Role::user)});
  EXPECT_EQ(text(0), QStringLiteral("早"));
  EXPECT_FALSE(m_model.data(m_model.index(0), ChatMessagesModel::UserRole).toBool());
  EXPECT_TRUE(m_model.data(m_model.index(1), ChatMessagesModel::UserRole).toBool());
}

TEST_F(ChatMessagesModelTest, AMessageThatIsStillEmptyShowsThatItWaits) {
  m_model.show({message(QString())});
  EXPECT_EQ(text(0), QStringLiteral("…"));
}

TEST_F(ChatMessagesModelTest, AReplyThatGrowsTouchesItsOwnRowOnly) {
  std::vector<ChatMessage> messages{message(QStringLiteral("a")), message(QString())};
  m_model.show(messages);
  m_inserted.clear();
  messages[1].text = QStringLiteral("嗯");
  m_model.show(messages);
  EXPECT_EQ(m_inserted.value(), 0);
  EXPECT_EQ(m_removed.value(), 0);
  ASSERT_EQ(m_changed.value(), 1);
  EXPECT_EQ(text(1), QStringLiteral("嗯"));
}

TEST_F(ChatMessagesModelTest, ANewMessageIsAddedAtTheEnd) {
  std::vector<ChatMessage> messages{message(QStringLiteral("a"))};
  m_model.show(messages);
  messages.push_back(message(QStringLiteral("b")));
  m_model.show(messages);
  ASSERT_EQ(m_inserted.value(), 2);
  EXPECT_EQ(m_model.rowCount(), 2);
  EXPECT_EQ(m_changed.value(), 0);
}

TEST_F(ChatMessagesModelTest, AnotherTalkReplacesTheRowsFromWhereItDiffers) {
  const ChatMessage first = message(QStringLiteral("a"));
  m_model.show({first, message(QStringLiteral("b")), message(QStringLiteral("c"))});
  m_model.show({first, message(QStringLiteral("d"))});
  EXPECT_EQ(m_model.rowCount(), 2);
  EXPECT_EQ(text(1), QStringLiteral("d"));
  m_model.show({});
  EXPECT_EQ(m_model.rowCount(), 0);
}

} // namespace
} // namespace morvo
