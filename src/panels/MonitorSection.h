#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The monitor tab's switches, and its looking again. Rows: label, hint, isOn.
class MonitorSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *toggles READ toggles CONSTANT)
  Q_PROPERTY(QString reloadLabel READ reloadLabel CONSTANT)

public:
  explicit MonitorSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *toggles() { return &m_toggles; }
  [[nodiscard]] static QString reloadLabel() { return QStringLiteral("刷新"); }

  /// Writes the setting of that row; it acts at its next use.
  Q_INVOKABLE void setToggle(int row, bool isOn);
  /// The tab has come up: has the figures looked at again, without reading any log unless the user
  /// lets them be read.
  Q_INVOKABLE void appeared();
  /// The user asks for new figures.
  Q_INVOKABLE void reload();

protected:
  void update(const PetStore &store, const PanelLook &look) override;

private:
  void lookAgain(bool deep);

  PanelRows m_toggles;
};

} // namespace morvo
