#include "panels/ChatSection.h"

#include "panels/PanelTexts.h"

namespace morvo {

void ChatSection::setEntries(PanelEntries *entries) {
  m_entries = entries;
  Q_EMIT changed();
}

bool ChatSection::send(const QString &draft) {
  if (!m_isSendable || m_entries == nullptr || draft.trimmed().isEmpty()) {
    return false;
  }
  m_entries->send(draft);
  return true;
}

void ChatSection::connectTo(PetStore &store) {
  connect(&store, &PetStore::messagesChanged, this, &ChatSection::showMessages);
  showMessages();
  observe(store, &PetStore::personaChanged);
  observe(store, &PetStore::chatHealthChanged);
  observe(store, &PetStore::thinkingChanged);
  observe(store, &PetStore::moodChanged);
}

void ChatSection::showMessages() {
  m_messages.show(store()->messages());
  Q_EMIT messagesShown();
}

void ChatSection::update(const PetStore &store, const PanelLook &look) {
  m_placeholder = QStringLiteral("跟") + store.persona().name + QStringLiteral("说点什么…");
  const bool isSpent = store.chatHealth() == ChatHealth::quotaExceeded;
  m_spentLine = isSpent ? PanelTexts::chatHealth(ChatHealth::quotaExceeded) : QString();
  m_isSendable = !isSpent && !store.isThinking();
  m_sendColor = look.fill(PanelTexts::accent(store.mood()));
}

} // namespace morvo
