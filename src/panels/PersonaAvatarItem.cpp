#include "panels/PersonaAvatarItem.h"

#include "companion/Personas.h"
#include "panels/Followed.h"
#include "panels/PanelTexts.h"

namespace morvo {
namespace {

/// Of the item; around the picture its glow dies away.
constexpr double pictureShare = 2.0 / 3;
/// Often enough for a motion of a point or two in five seconds.
constexpr auto framePeriod = std::chrono::milliseconds(1000) / 12;

} // namespace

void PersonaAvatarItem::setStore(PetStore *store) {
  if (!Followed::replace(m_store, store, this)) {
    return;
  }
  m_timer = {};
  if (m_store != nullptr) {
    connect(m_store, &PetStore::moodChanged, this, [this] { update(); });
    connect(m_store, &PetStore::customPersonasChanged, this, &PersonaAvatarItem::load);
  }
  load();
  onScreenChanged();
  Q_EMIT storeChanged();
}

void PersonaAvatarItem::setLook(PanelLook *look) {
  if (!Followed::replace(m_look, look, this)) {
    return;
  }
  if (m_look != nullptr) {
    connect(m_look, &PanelLook::changed, this, [this] { update(); });
  }
  update();
  Q_EMIT lookChanged();
}

void PersonaAvatarItem::setPersona(const QString &persona) {
  if (m_persona == persona) {
    return;
  }
  m_persona = persona;
  load();
  Q_EMIT personaChanged();
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

void PersonaAvatarItem::onScreenChanged() {
  if (m_store == nullptr || !isOnScreen()) {
    m_timer = {};
  } else if (!m_timer.isActive()) {
    m_timer = m_store->scheduler().every(framePeriod, [this] { update(); });
  }
}

void PersonaAvatarItem::paint(QPainter *painter) {
  if (!m_avatar || m_store == nullptr || m_look == nullptr) {
    return;
  }
  const QString mood = m_store->mood();
  const std::chrono::duration<double> time = m_store->clock().instant().time_since_epoch();
  QRectF picture(QPointF(), size() * pictureShare);
  picture.moveCenter(boundingRect().center());
  m_avatar->paint(*painter, picture,
                  {.mood = mood,
                   .accent = m_look->fill(PanelTexts::accent(mood)),
                   .fontScale = m_look->fontScale()},
                  time.count());
}

} // namespace morvo
