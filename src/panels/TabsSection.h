#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The panel's tabs and its size. Rows: label, symbolName.
class TabsSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
  Q_PROPERTY(QString panelName READ panelName CONSTANT)
  Q_PROPERTY(int opening READ opening NOTIFY changed)

public:
  explicit TabsSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  /// The row of the tab that a new panel begins with.
  [[nodiscard]] int opening() const { return m_opening; }
  /// What the panel and its row of tabs are called to those who do not see them.
  [[nodiscard]] static QString panelName() { return QStringLiteral("MorvoBar"); }
  /// The panel's width in points.
  Q_INVOKABLE [[nodiscard]] static int panelWidth();
  /// Its height on a screen with that much height free of bars; below 1 for no screen.
  Q_INVOKABLE [[nodiscard]] static int panelHeight(int visibleHeight);

protected:
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
  int m_opening = 0;
};

} // namespace morvo
