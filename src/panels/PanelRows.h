#pragma once

#include <QAbstractListModel>
#include <QByteArrayList>
#include <QVariantList>

namespace morvo {

/// A short list for QML, shown by value: rows that stay keep their delegates, so that focus and
/// scroll position survive a change of figures.
class PanelRows : public QAbstractListModel {
  Q_OBJECT

public:
  /// `roles` names the values of a row, in their order.
  explicit PanelRows(const QByteArrayList &roles, QObject *parent = nullptr);

  /// Each row has one value for each role.
  void show(const QList<QVariantList> &rows);
  /// For code beside QML: the value of that name; invalid when there is none.
  [[nodiscard]] QVariant value(int row, const QByteArray &role) const;

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
  QByteArrayList m_roles;
  QList<QVariantList> m_rows;
};

} // namespace morvo
