#pragma once

#include "platform/linux/SecretVault.h"

#include <memory>

namespace morvo {

/// The Secret Service of the session bus, through libsecret. Secrets stand in the default
/// collection; a collection that is locked or missing counts as locked, since using it would ask
/// the user.
class LibsecretVault final : public SecretVault {
public:
  LibsecretVault();
  LibsecretVault(const LibsecretVault &) = delete;
  LibsecretVault &operator=(const LibsecretVault &) = delete;
  ~LibsecretVault() override;

  /// A value that is no UTF-8 is left out.
  [[nodiscard]] std::expected<Secrets, Failure> load() override;
  [[nodiscard]] std::expected<void, Failure> store(const SecretKey &key,
                                                   const QString &value) override;
  [[nodiscard]] std::expected<void, Failure> erase(const SecretKey &key) override;

private:
  class Session;
  std::unique_ptr<Session> m_session;
};

} // namespace morvo
