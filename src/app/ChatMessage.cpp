#include "app/ChatMessage.h"

namespace morvo {

QString rawValue(ChatMessage::Role role) {
  return role == ChatMessage::Role::user ? QStringLiteral("user") : QStringLiteral("pet");
}

} // namespace morvo
