#pragma once

#include "platform/SecretStore.h"

#include <QHash>

#include <utility>
#include <vector>

namespace morvo::test {

/// Secrets that live in memory.
class MemorySecrets final : public SecretStore {
public:
  [[nodiscard]] std::optional<QString> read(const QString &service,
                                            const QString &account) const override {
    const auto found = m_values.constFind({service, account});
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
  }
  void save(const QString &value, const QString &service, const QString &account) override {
    if (const QString trimmed = value.trimmed(); !trimmed.isEmpty()) {
      m_values.insert({service, account}, trimmed);
    }
  }
  void remove(const QString &service, const QString &account) override {
    m_values.remove({service, account});
  }
  void onLoaded(std::function<void()> handler) override {
    m_handlers.push_back(std::move(handler));
  }

  /// Secrets arrive from outside.
  void load() {
    for (const auto &handler : m_handlers) {
      handler();
    }
  }

private:
  QHash<std::pair<QString, QString>, QString> m_values;
  std::vector<std::function<void()>> m_handlers;
};

} // namespace morvo::test
