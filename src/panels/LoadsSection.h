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
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString caption READ caption CONSTANT)
  Q_PROPERTY(QString emptyLine READ emptyLine CONSTANT)

public:
  explicit LoadsSection(QObject *parent = nullptr);

  [[nodiscard]] PanelRows *rows() { return &m_rows; }
  [[nodiscard]] bool isEmpty() const { return m_rows.rowCount() == 0; }
  [[nodiscard]] static QString title() { return QStringLiteral("额度"); }
  [[nodiscard]] static QString caption() {
    return QStringLiteral(
        "5 小时窗与一周窗。有官方百分比就显示进度条；下方 token 为本机日志累计。");
  }
  /// Shown in place of an empty list.
  [[nodiscard]] static QString emptyLine() {
    return QStringLiteral(
        "还没读到用量。在设置里扫描 Claude / Codex / Cursor，或先用一会儿对应工具。");
  }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  PanelRows m_rows;
};

} // namespace morvo
