#pragma once

#include "app/ChatMessage.h"

#include <QAbstractListModel>

#include <vector>

namespace morvo {

/// The chat timeline as QML lists it. A reply that grows in place, or a message that is added,
/// touches its own row only.
class ChatMessagesModel : public QAbstractListModel {
  Q_OBJECT

public:
  enum Role { TextRole = Qt::UserRole, UserRole };

  using QAbstractListModel::QAbstractListModel;

  void show(std::vector<ChatMessage> messages);

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  /// `text` is "…" for a message that is still empty; `isUser` tells whose it is.
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
  std::vector<ChatMessage> m_messages;
};

} // namespace morvo
