#include "panels/PanelSection.h"

#include "panels/Followed.h"

namespace morvo {

void PanelSection::setStore(PetStore *store) {
  if (!Followed::replace(m_store, store, this)) {
    return;
  }
  if (m_store != nullptr) {
    connectTo(*m_store);
  }
  Q_EMIT storeChanged();
  refresh();
}

void PanelSection::setLook(PanelLook *look) {
  if (!Followed::replace(m_look, look, this)) {
    return;
  }
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
