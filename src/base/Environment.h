#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace morvo {

/// The variables of a process, as a value: production code is handed a copy of the real ones,
/// tests make their own.
class Environment {
public:
  Environment() = default;
  explicit Environment(QHash<QString, QString> variables);

  /// The variables of this process, now.
  [[nodiscard]] static Environment ofProcess();

  /// The variable's value, perhaps empty; nothing when it is not set.
  [[nodiscard]] std::optional<QString> value(const QString &name) const;
  /// The variable's value; nothing when it is not set or empty.
  [[nodiscard]] std::optional<QString> nonEmpty(const QString &name) const;
  /// Whether the variable has exactly the value "1".
  [[nodiscard]] bool isOne(const QString &name) const;
  [[nodiscard]] const QHash<QString, QString> &variables() const { return m_variables; }
  /// The same variables with this one set.
  [[nodiscard]] Environment with(const QString &name, const QString &value) const;
  /// The same variables without this one.
  [[nodiscard]] Environment without(const QString &name) const;

private:
  QHash<QString, QString> m_variables;
};

} // namespace morvo
