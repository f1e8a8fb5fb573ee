#include "panels/PersonaAvatarItem.h"

#include "companion/Personas.h"

namespace morvo {

void PersonaAvatarItem::setStore(PetStore *store) {
  if (m_store == store) {
    return;
  }
  m_store = store;
  load();
  Q_EMIT storeChanged();
}

void PersonaAvatarItem::setPersona(const QString &persona) {
  if (m_persona == persona) {
    return;
  }
  m_persona = persona;
  load();
  Q_EMIT personaChanged();
}

void PersonaAvatarItem::setAccent(const QColor &accent) {
  if (m_accent != accent) {
    m_accent = accent;
    update();
    Q_EMIT accentChanged();
  }
}

void PersonaAvatarItem::load() {
  m_avatar.reset();
  if (m_store != nullptr) {
    if (auto persona = Personas::find(m_store->setting().store(), m_persona)) {
      m_avatar.emplace(*std::move(persona));
    }
  }
  update();
}

void PersonaAvatarItem::paint(QPainter *painter) {
  if (m_avatar && m_store != nullptr) {
    m_avatar->paint(*painter, boundingRect(),
                    {.mood = m_store->mood(), .accent = m_accent, .fontScale = 1}, 0);
  }
}

} // namespace morvo
