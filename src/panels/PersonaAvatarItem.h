#pragma once

#include "app/PetStore.h"
#include "companion/PersonaAvatar.h"

#include <QPointer>
#include <QQuickPaintedItem>

#include <optional>

namespace morvo {

/// The picture of a persona, at rest.
class PersonaAvatarItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
  Q_PROPERTY(QString persona READ persona WRITE setPersona NOTIFY personaChanged REQUIRED)
  Q_PROPERTY(QColor accent READ accent WRITE setAccent NOTIFY accentChanged REQUIRED)

public:
  using QQuickPaintedItem::QQuickPaintedItem;

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);
  /// The persona's id.
  [[nodiscard]] const QString &persona() const { return m_persona; }
  void setPersona(const QString &persona);
  [[nodiscard]] const QColor &accent() const { return m_accent; }
  void setAccent(const QColor &accent);

  void paint(QPainter *painter) override;

Q_SIGNALS:
  void storeChanged();
  void personaChanged();
  void accentChanged();

private:
  void load();

  QPointer<PetStore> m_store;
  QString m_persona;
  QColor m_accent;
  std::optional<PersonaAvatar> m_avatar;
};

} // namespace morvo
