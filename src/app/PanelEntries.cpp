#include "app/PanelEntries.h"

#include <utility>

namespace morvo {

PanelEntries::PanelEntries(Doors doors) : m_doors(std::move(doors)) {}

void PanelEntries::openSettings() const {
  if (hasSettings()) {
    m_doors.settings();
  }
}

void PanelEntries::send(const QString &text) const {
  if (hasChat()) {
    m_doors.send(text);
  }
}

void PanelEntries::openNewPet(const QString &title) const {
  if (hasNewPet()) {
    m_doors.newPet(title);
  }
}

QStringList PanelEntries::missingFrameSets(const QString &personaId) const {
  return hasFillAnimations() ? m_doors.missingFrameSets(personaId) : QStringList();
}

void PanelEntries::fillMissingAnimations(const QString &personaId) const {
  if (hasFillAnimations()) {
    m_doors.fillMissingAnimations(personaId);
  }
}

} // namespace morvo
