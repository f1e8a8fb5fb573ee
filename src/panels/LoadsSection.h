#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// How full the agents' windows are. Rows: name, trust, trustCaption, trustColor, and for each of
/// `window` and `week` a title, a share (0 to 1, below 0 without a percentage), a percent text, its
/// colour, a tokens text and a fill.
class LoadsSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY changed)

public:
  explicit LoadsSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  [[nodiscard]] bool isEmpty() const { return m_rows.rowCount() == 0; }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
};

} // namespace morvo
