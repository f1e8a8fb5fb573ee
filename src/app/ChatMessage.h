#pragma once

#include <QString>
#include <QUuid>

namespace morvo {

/// One line of the chat timeline.
struct ChatMessage {
  enum class Role { user, pet };

  QUuid id = QUuid::createUuid();
  Role role = Role::pet;
  QString text; ///< A streamed reply grows in place.

  bool operator==(const ChatMessage &) const = default;
};

/// "user" or "pet".
[[nodiscard]] QString rawValue(ChatMessage::Role role);

} // namespace morvo
