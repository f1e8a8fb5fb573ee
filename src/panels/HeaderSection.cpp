#include "panels/HeaderSection.h"

#include "panels/PanelTexts.h"

namespace morvo {

void HeaderSection::connectTo(PetStore &store) {
  observe(store, &PetStore::personaChanged);
  observe(store, &PetStore::moodChanged);
  observe(store, &PetStore::connectedChanged);
  observe(store, &PetStore::chatHealthChanged);
}

void HeaderSection::update(const PetStore &store, const PanelLook &look) {
  m_name = store.persona().name;
  const QString label = PanelTexts::moodLabel(store.mood());
  m_state = store.isConnected() ? label : QStringLiteral("离线 · ") + label;
  m_stateColor = look.inkOn(PanelTexts::accent(store.mood()), look.abyss());
  const ChatHealth health = store.chatHealth();
  m_trouble = PanelTexts::showsChatHealth(health) ? PanelTexts::chatHealth(health) : QString();
  m_troubleColor = look.inkOn({PanelTint::Tone::krill, 0.9}, look.abyss());
}

} // namespace morvo
