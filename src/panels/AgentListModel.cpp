#include "panels/AgentListModel.h"

#include <array>

namespace morvo {
namespace {

struct Row {
  QStringView name;
  bool (PetStore::*isConnected)() const = nullptr;
  void (PetStore::*changed)() = nullptr;
};

constexpr std::array rows{
    Row{u"Claude Code", &PetStore::claudeConnected, &PetStore::claudeConnectedChanged},
    Row{u"Codex", &PetStore::codexConnected, &PetStore::codexConnectedChanged},
    Row{u"Gemini CLI", &PetStore::geminiConnected, &PetStore::geminiConnectedChanged},
    Row{u"Cursor", &PetStore::cursorConnected, &PetStore::cursorConnectedChanged},
};

} // namespace

AgentListModel::AgentListModel(QObject *parent) : QAbstractListModel(parent) {}

void AgentListModel::setStore(PetStore *store) {
  if (m_store == store) {
    return;
  }
  if (m_store != nullptr) {
    m_store->disconnect(this);
  }
  m_store = store;
  for (const Row &row : rows) {
    if (m_store != nullptr) {
      connect(m_store, row.changed, this, &AgentListModel::refresh);
    }
  }
  refresh();
  Q_EMIT storeChanged();
}

void AgentListModel::refresh() { Q_EMIT dataChanged(index(0), index(rowCount() - 1)); }

int AgentListModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

QVariant AgentListModel::data(const QModelIndex &index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const Row &row = rows.at(static_cast<std::size_t>(index.row()));
  const bool connected = m_store != nullptr && (m_store->*row.isConnected)();
  switch (role) {
  case NameRole:
    return row.name.toString();
  case ConnectedRole:
    return connected;
  case StateRole:
    return connected ? QStringLiteral("已连接") : QStringLiteral("未连接");
  default:
    return {};
  }
}

QHash<int, QByteArray> AgentListModel::roleNames() const {
  return {{NameRole, "name"}, {ConnectedRole, "connected"}, {StateRole, "state"}};
}

} // namespace morvo
