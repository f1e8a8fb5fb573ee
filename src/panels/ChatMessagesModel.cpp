#include "panels/ChatMessagesModel.h"

#include <algorithm>
#include <utility>

namespace morvo {

void ChatMessagesModel::show(std::vector<ChatMessage> messages) {
  const auto [mine, theirs] =
      std::ranges::mismatch(m_messages, messages, {}, &ChatMessage::id, &ChatMessage::id);
  const auto kept = static_cast<std::size_t>(mine - m_messages.begin());
  static_cast<void>(theirs);
  if (m_messages.size() > kept) {
    beginRemoveRows({}, static_cast<int>(kept), static_cast<int>(m_messages.size() - 1));
    m_messages.erase(mine, m_messages.end());
    endRemoveRows();
  }
  for (std::size_t row = 0; row < kept; ++row) {
    if (m_messages[row] != messages[row]) {
      m_messages[row] = messages[row];
      const QModelIndex changed = index(static_cast<int>(row));
      Q_EMIT dataChanged(changed, changed);
    }
  }
  if (messages.size() > kept) {
    beginInsertRows({}, static_cast<int>(kept), static_cast<int>(messages.size() - 1));
    m_messages = std::move(messages);
    endInsertRows();
  }
}

int ChatMessagesModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_messages.size());
}

QVariant ChatMessagesModel::data(const QModelIndex &index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const ChatMessage &message = m_messages[static_cast<std::size_t>(index.row())];
  switch (role) {
  case TextRole:
    return message.text.isEmpty() ? QStringLiteral("…") : message.text;
  case UserRole:
    return message.role == ChatMessage::Role::user;
  default:
    return {};
  }
}

QHash<int, QByteArray> ChatMessagesModel::roleNames() const {
  return {{TextRole, "text"}, {UserRole, "isUser"}};
}

} // namespace morvo
