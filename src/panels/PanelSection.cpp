#include "panels/PanelSection.h"

namespace morvo {

void PanelSection::setStore(PetStore *store) {
  if (m_store == store) {
    return;
  }
  if (m_store != nullptr) {
    m_store->disconnect(this);
  }
  m_store = store;
  if (m_store != nullptr) {
    connectTo(*m_store);
  }
  Q_EMIT storeChanged();
  refresh();
}

void PanelSection::setLook(PanelLook *look) {
  if (m_look == look) {
    return;
  }
  if (m_look != nullptr) {
    m_look->disconnect(this);
  }
  m_look = look;
  if (m_look != nullptr) {
    connect(m_look, &PanelLook::changed, this, &PanelSection::refresh);
  }
  Q_EMIT lookChanged();
  refresh();
}

void PanelSection::refresh() {
  if (m_store != nullptr && m_look != nullptr) {
    update(*m_store, *m_look);
    Q_EMIT changed();
  }
}

} // namespace morvo
