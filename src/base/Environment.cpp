#include "base/Environment.h"

#include <QProcessEnvironment>

#include <utility>

namespace morvo {

Environment::Environment(QHash<QString, QString> variables) : m_variables(std::move(variables)) {}

Environment Environment::ofProcess() {
  const auto system = QProcessEnvironment::systemEnvironment();
  QHash<QString, QString> variables;
  for (const QString &key : system.keys()) {
    variables.insert(key, system.value(key));
  }
  return Environment(std::move(variables));
}

std::optional<QString> Environment::value(const QString &name) const {
  const auto found = m_variables.constFind(name);
  return found == m_variables.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<QString> Environment::nonEmpty(const QString &name) const {
  auto found = value(name);
  return found && !found->isEmpty() ? found : std::nullopt;
}

bool Environment::isOne(const QString &name) const { return value(name) == QStringLiteral("1"); }

Environment Environment::with(const QString &name, const QString &value) const {
  Environment changed = *this;
  changed.m_variables.insert(name, value);
  return changed;
}

Environment Environment::without(const QString &name) const {
  Environment changed = *this;
  changed.m_variables.remove(name);
  return changed;
}

} // namespace morvo
