#pragma once

#include "panels/PanelSection.h"

namespace morvo {

/// The pet tab's switch for approvals, and the way to the pet on the desktop.
class ActSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool on READ isOn NOTIFY changed)
  Q_PROPERTY(QString label READ label CONSTANT)
  Q_PROPERTY(QString showPetLabel READ showPetLabel CONSTANT)
  Q_PROPERTY(QString petHint READ petHint CONSTANT)

public:
  using PanelSection::PanelSection;

  /// What the setting says, whatever the agent's file holds.
  [[nodiscard]] bool isOn() const { return m_isOn; }
  /// Writes the setting, then the agent's file.
  Q_INVOKABLE void setOn(bool on);
  Q_INVOKABLE void showDesktopPet();
  [[nodiscard]] static QString label() { return QStringLiteral("Act 权限守门（改动必问你）"); }
  [[nodiscard]] static QString showPetLabel() { return QStringLiteral("显示桌面宠"); }
  [[nodiscard]] static QString petHint() {
    return QStringLiteral("摸摸 / 喂食 / 动作 → 右键桌面悬浮宠");
  }

protected:
  void update(const PetStore &store, const PanelLook &look) override;

private:
  bool m_isOn = false;
};

} // namespace morvo
