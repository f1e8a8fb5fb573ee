#include "panels/QuotaSection.h"

#include "panels/QuotaBar.h"

namespace morvo {

QuotaSection::QuotaSection(QObject *parent)
    : PanelSection(parent),
      m_rows({"title", "value", "progress", "isUnlimited", "fill", "valueColor"}) {}

double QuotaSection::fillWidth(double progress, bool isUnlimited, double width) {
  return QuotaBar{.progress = progress, .isUnlimited = isUnlimited}.fillWidth(width);
}

void QuotaSection::connectTo(PetStore &store) { observe(store, &PetStore::quotaChanged); }

void QuotaSection::update(const PetStore &store, const PanelLook &look) {
  QList<QVariantList> rows;
  for (const QuotaBar &bar : QuotaBars::of(store.quota())) {
    rows.append({bar.title, bar.value, bar.progress, bar.isUnlimited, look.fill(bar.fill),
                 look.ink(bar.valueTint)});
  }
  m_rows.show(rows);
}

} // namespace morvo
