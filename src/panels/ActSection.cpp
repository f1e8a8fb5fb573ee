#include "panels/ActSection.h"

#include "platform/SettingKeys.h"

namespace morvo {

void ActSection::setOn(bool on) {
  if (store() == nullptr) {
    return;
  }
  store()->setting().store().set(SettingKeys::act, on);
  // The switch shows the setting, so a failed write is told by nothing but the missing approvals.
  static_cast<void>(store()->setActConnected(on));
  refresh();
}

void ActSection::showDesktopPet() {
  if (store() != nullptr) {
    store()->showPet();
  }
}

void ActSection::update(const PetStore &store, const PanelLook & /*look*/) {
  m_isOn = store.setting().boolean(SettingKeys::act, false);
}

} // namespace morvo
