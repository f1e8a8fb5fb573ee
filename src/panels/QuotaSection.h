#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The bars of the account's quota. Rows: title, value, progress, isUnlimited, fill, valueColor.
class QuotaSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)

public:
  explicit QuotaSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  /// The length of a row's fill in a bar of that width, in points.
  Q_INVOKABLE [[nodiscard]] static double fillWidth(double progress, bool isUnlimited,
                                                    double width);

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
};

} // namespace morvo
