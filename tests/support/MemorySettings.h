#pragma once

#include "platform/SettingsStore.h"

#include <QHash>

namespace morvo::test {

/// Settings that live in memory.
class MemorySettings final : public SettingsStore {
public:
  [[nodiscard]] std::optional<QVariant> object(const QString &key) const override {
    const auto found = m_values.constFind(key);
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
  }
  void set(const QString &key, const QVariant &value) override { m_values.insert(key, value); }
  void remove(const QString &key) override { m_values.remove(key); }
  void atOnce(const std::function<void()> &change) override { change(); }

private:
  QHash<QString, QVariant> m_values;
};

} // namespace morvo::test
