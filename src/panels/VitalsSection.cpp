#include "panels/VitalsSection.h"

#include "panels/Vital.h"

namespace morvo {

VitalsSection::VitalsSection(QObject *parent)
    : PanelSection(parent), m_rows({"emoji", "label", "value", "valueColor", "help"}) {}

void VitalsSection::connectTo(PetStore &store) { observe(store, &PetStore::needsChanged); }

void VitalsSection::update(const PetStore &store, const PanelLook &look) {
  QList<QVariantList> rows;
  for (const Vital &vital : Vitals::of(store.needs())) {
    rows.append({vital.emoji, vital.label, vital.text(), look.ink(vital.tint), vital.help()});
  }
  m_rows.show(rows);
}

} // namespace morvo
