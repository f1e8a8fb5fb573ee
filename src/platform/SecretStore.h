#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace morvo {

/// Secrets of the user, each identified by a service and an account. Main thread. A secret never
/// appears in a log, an error text or any file but the store's own.
class SecretStore {
public:
  virtual ~SecretStore() = default;

  /// The secret; nothing on any failure, and nothing before it has arrived from where it is kept.
  /// Never blocks.
  [[nodiscard]] virtual std::optional<QString> read(const QString &service,
                                                    const QString &account) const = 0;
  /// Stores the value, trimmed of white space and line ends. An empty result does nothing at all,
  /// so an existing secret stays. Reads give the value at once. A failure to store is not reported.
  virtual void save(const QString &value, const QString &service, const QString &account) = 0;
  /// Forgets the secret. Reads give nothing at once. A failure is not reported.
  virtual void remove(const QString &service, const QString &account) = 0;

  /// Adds a handler called each time secrets have arrived from outside: once after the start, and
  /// again when a slow service answers after all. Called later when they have already arrived.
  virtual void onLoaded(std::function<void()> handler) = 0;

  /// Whether a read gives a non-empty text.
  [[nodiscard]] bool has(const QString &service, const QString &account) const {
    const auto value = read(service, account);
    return value && !value->isEmpty();
  }
};

} // namespace morvo
