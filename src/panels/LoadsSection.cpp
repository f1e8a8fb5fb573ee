#include "panels/LoadsSection.h"

#include "panels/LoadFormat.h"

#include <algorithm>

namespace morvo {
namespace {

constexpr double noShare = -1;

QVariantList values(const LoadFormat::Bar &bar, const PanelLook &look) {
  const double share = bar.pct ? std::clamp(*bar.pct / 100.0, 0.0, 1.0) : noShare;
  return {bar.title,          share, bar.percent, look.ink(bar.percentTint), bar.tokens,
          look.fill(bar.fill)};
}

} // namespace

LoadsSection::LoadsSection(QObject *parent)
    : PanelSection(parent),
      m_rows({"name", "trust", "trustCaption", "trustColor", "windowTitle", "windowShare",
              "windowPercent", "windowPercentColor", "windowTokens", "windowFill", "weekTitle",
              "weekShare", "weekPercent", "weekPercentColor", "weekTokens", "weekFill"}) {}

void LoadsSection::connectTo(PetStore &store) { observe(store, &PetStore::sourceLoadsChanged); }

void LoadsSection::update(const PetStore &store, const PanelLook &look) {
  QList<QVariantList> rows;
  for (const SourceLoad &load : LoadFormat::active(store.sourceLoads())) {
    rows.append(QVariantList{load.name, LoadFormat::trustLabel(load.trust),
                             LoadFormat::trustCaption(load.trust),
                             look.ink(LoadFormat::trustColor(load.trust))} +
                values(LoadFormat::window(load), look) + values(LoadFormat::week(load), look));
  }
  m_rows.show(rows);
}

} // namespace morvo
