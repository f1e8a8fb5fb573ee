#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The pet's vitals. Rows: emoji, label, value, valueColor, help.
class VitalsSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString note READ note CONSTANT)
  Q_PROPERTY(QString hint READ hint CONSTANT)

public:
  explicit VitalsSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  [[nodiscard]] static QString title() { return QStringLiteral("状态"); }
  [[nodiscard]] static QString note() { return QStringLiteral("与 coding 无关"); }
  [[nodiscard]] static QString hint() { return QStringLiteral("摸摸、喂食、聊聊天会改变状态。"); }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
};

} // namespace morvo
