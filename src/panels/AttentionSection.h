#pragma once

#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The card of what deserves the eye now. Rows: title, detail, dot.
class AttentionSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool shown READ isShown NOTIFY changed)
  Q_PROPERTY(QString headline READ headline NOTIFY changed)
  Q_PROPERTY(QString explain READ explain NOTIFY changed)
  Q_PROPERTY(QColor ground READ ground NOTIFY changed)
  Q_PROPERTY(QColor edge READ edge NOTIFY changed)
  Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
  Q_PROPERTY(QString title READ title CONSTANT)

public:
  explicit AttentionSection(QObject *parent = nullptr);

  [[nodiscard]] bool isShown() const { return m_isShown; }
  [[nodiscard]] const QString &headline() const { return m_headline; }
  [[nodiscard]] const QString &explain() const { return m_explain; }
  [[nodiscard]] const QColor &ground() const { return m_ground; }
  [[nodiscard]] const QColor &edge() const { return m_edge; }
  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  [[nodiscard]] static QString title() { return QStringLiteral("现在"); }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  bool m_isShown = false;
  QString m_headline;
  QString m_explain;
  QColor m_ground;
  QColor m_edge;
  PanelRows m_rows;
};

} // namespace morvo
