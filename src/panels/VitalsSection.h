#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The pet's vitals. Rows: emoji, label, value, valueColor, help.
class VitalsSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)

public:
  explicit VitalsSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
};

} // namespace morvo
