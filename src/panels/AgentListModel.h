#pragma once

#include "app/PetStore.h"

#include <QAbstractListModel>
#include <QQmlEngine>

namespace morvo {

/// The agents that can be connected, with what there is to show of each.
class AgentListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)

public:
  enum Role { NameRole = Qt::UserRole, ConnectedRole, StateRole };

  explicit AgentListModel(QObject *parent = nullptr);

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);

  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
  void storeChanged();

private:
  void refresh();

  PetStore *m_store = nullptr;
};

} // namespace morvo
