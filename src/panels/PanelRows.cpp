#include "panels/PanelRows.h"

#include <algorithm>

namespace morvo {

PanelRows::PanelRows(const QByteArrayList &roles, QObject *parent)
    : QAbstractListModel(parent), m_roles(roles) {}

void PanelRows::show(const QList<QVariantList> &rows) {
  const qsizetype kept = std::min(rows.size(), m_rows.size());
  if (m_rows.size() > kept) {
    beginRemoveRows({}, static_cast<int>(kept), static_cast<int>(m_rows.size() - 1));
    m_rows.resize(kept);
    endRemoveRows();
  }
  for (qsizetype row = 0; row < kept; ++row) {
    if (m_rows[row] != rows[row]) {
      m_rows[row] = rows[row];
      const QModelIndex changed = index(static_cast<int>(row));
      Q_EMIT dataChanged(changed, changed);
    }
  }
  if (rows.size() > kept) {
    beginInsertRows({}, static_cast<int>(kept), static_cast<int>(rows.size() - 1));
    m_rows.append(rows.sliced(kept));
    endInsertRows();
  }
}

QVariant PanelRows::value(int row, const QByteArray &role) const {
  const auto column = m_roles.indexOf(role);
  return column < 0 ? QVariant() : data(index(row), Qt::UserRole + static_cast<int>(column));
}

int PanelRows::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant PanelRows::data(const QModelIndex &index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  return m_rows.at(index.row()).value(role - Qt::UserRole);
}

QHash<int, QByteArray> PanelRows::roleNames() const {
  QHash<int, QByteArray> names;
  for (qsizetype i = 0; i < m_roles.size(); ++i) {
    names.insert(Qt::UserRole + static_cast<int>(i), m_roles[i]);
  }
  return names;
}

} // namespace morvo
