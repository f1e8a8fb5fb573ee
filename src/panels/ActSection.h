#pragma once

#include "panels/PanelSection.h"

namespace morvo {

/// The pet tab's switch for approvals, and the way to the pet on the desktop.
class ActSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool on READ isOn NOTIFY changed)

public:
  using PanelSection::PanelSection;

  /// What the setting says, whatever the agent's file holds.
  [[nodiscard]] bool isOn() const { return m_isOn; }
  /// Writes the setting, then the agent's file.
  Q_INVOKABLE void setOn(bool on);
  Q_INVOKABLE void showDesktopPet();

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  bool m_isOn = false;
};

} // namespace morvo
