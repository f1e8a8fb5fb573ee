#pragma once

#include "panels/PanelLook.h"

namespace morvo {

/// A part of the panel: the store's state, put into words and colours. What a part shows is
/// recomputed when the state it shows or the look has changed.
class PanelSection : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
  Q_PROPERTY(morvo::PanelLook *look READ look WRITE setLook NOTIFY lookChanged REQUIRED)

public:
  using QObject::QObject;

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);
  [[nodiscard]] PanelLook *look() const { return m_look; }
  void setLook(PanelLook *look);

Q_SIGNALS:
  void storeChanged();
  void lookChanged();
  /// What is shown has changed.
  void changed();

protected:
  /// The part's connections to the store's changes; `observe` makes one.
  virtual void connectTo(PetStore & /*store*/) {}
  /// Called with both there, whenever what is shown may have changed.
  virtual void update(const PetStore &store, const PanelLook &look) = 0;

  template <typename Signal> void observe(PetStore &store, Signal signal) {
    connect(&store, signal, this, &PanelSection::refresh);
  }
  void refresh();

private:
  QPointer<PetStore> m_store;
  QPointer<PanelLook> m_look;
};

} // namespace morvo
