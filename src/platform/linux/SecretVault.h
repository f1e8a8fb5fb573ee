#pragma once

#include "platform/linux/SecretKey.h"

#include <expected>
#include <map>

namespace morvo {

/// The place outside the process where secrets are kept. Its calls block, perhaps for long, and
/// come from one thread that is not the main one.
class SecretVault {
public:
  using Secrets = std::map<SecretKey, QString>;

  enum class Failure {
    unreachable, ///< No service, or it did not answer.
    locked,      ///< It would first have to ask the user.
    refused,
  };

  virtual ~SecretVault() = default;

  /// All secrets of the program that can be read without asking the user.
  [[nodiscard]] virtual std::expected<Secrets, Failure> load() = 0;
  /// Replaces the secret. Never asks the user.
  [[nodiscard]] virtual std::expected<void, Failure> store(const SecretKey &key,
                                                           const QString &value) = 0;
  /// Removes the secret; a missing one is no failure.
  [[nodiscard]] virtual std::expected<void, Failure> erase(const SecretKey &key) = 0;
};

} // namespace morvo
