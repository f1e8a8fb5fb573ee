#pragma once

#include "companion/PersonaAvatar.h"
#include "panels/PanelLook.h"
#include "panels/ScreenItem.h"

#include <optional>

namespace morvo {

/// The picture of a persona, breathing while it is on the screen, in the colour of the pet's mood.
/// It takes two thirds of the item; the rest is for its glow.
class PersonaAvatarItem : public morvo::ScreenItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
  Q_PROPERTY(morvo::PanelLook *look READ look WRITE setLook NOTIFY lookChanged REQUIRED)
  Q_PROPERTY(QString persona READ persona WRITE setPersona NOTIFY personaChanged REQUIRED)

public:
  using ScreenItem::ScreenItem;

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);
  [[nodiscard]] PanelLook *look() const { return m_look; }
  void setLook(PanelLook *look);
  /// The persona's id.
  [[nodiscard]] const QString &persona() const { return m_persona; }
  void setPersona(const QString &persona);

  void paint(QPainter *painter) override;
  /// Whether it breathes.
  [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }

Q_SIGNALS:
  void storeChanged();
  void lookChanged();
  void personaChanged();

protected:
  void onScreenChanged() override;

private:
  void load();

  QPointer<PetStore> m_store;
  QPointer<PanelLook> m_look;
  QString m_persona;
  std::optional<PersonaAvatar> m_avatar;
  Scheduler::Timer m_timer;
};

} // namespace morvo
