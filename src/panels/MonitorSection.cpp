#include "panels/MonitorSection.h"

#include "panels/MonitorToggle.h"
#include "platform/SettingKeys.h"

namespace morvo {

MonitorSection::MonitorSection(QObject *parent)
    : PanelSection(parent), m_toggles({"label", "hint", "isOn"}) {}

void MonitorSection::update(const PetStore &store, const PanelLook & /*look*/) {
  QList<QVariantList> rows;
  for (const MonitorToggle &toggle : MonitorToggles::all()) {
    rows.append({toggle.label, toggle.hint, store.setting().boolean(toggle.key, toggle.fallback)});
  }
  m_toggles.show(rows);
}

void MonitorSection::setToggle(int row, bool isOn) {
  const auto toggles = MonitorToggles::all();
  if (store() == nullptr || row < 0 || static_cast<std::size_t>(row) >= toggles.size()) {
    return;
  }
  store()->setting().store().set(toggles[static_cast<std::size_t>(row)].key, isOn);
  refresh();
}

void MonitorSection::appeared() {
  // Another program may have written the settings since.
  refresh();
  lookAgain(false);
}

void MonitorSection::reload() {
  lookAgain(store() != nullptr && store()->setting().boolean(SettingKeys::captureUsage, false));
}

void MonitorSection::lookAgain(bool deep) {
  if (store() != nullptr) {
    store()->load(true);
    store()->scanSourcesOnly(deep);
  }
}

} // namespace morvo
