#include "panels/TabsSection.h"

#include "panels/MainPanelTab.h"
#include "panels/PanelFrame.h"

namespace morvo {

TabsSection::TabsSection(QObject *parent) : PanelSection(parent), m_rows({"label", "symbolName"}) {
  QList<QVariantList> rows;
  for (const MainPanelTab tab : MainPanelTabs::all) {
    rows.append({MainPanelTabs::label(tab), MainPanelTabs::symbol(tab)});
  }
  m_rows.show(rows);
}

int TabsSection::panelWidth() { return PanelFrame::width; }

int TabsSection::panelHeight(int visibleHeight) {
  return PanelFrame::height(visibleHeight < 1 ? std::nullopt : std::optional(visibleHeight));
}

void TabsSection::update(const PetStore &store, const PanelLook & /*look*/) {
  m_opening = static_cast<int>(MainPanelTabs::opening(store.setting().environment()));
}

} // namespace morvo
