#pragma once

#include <QString>

#include <compare>

namespace morvo {

/// What identifies a secret.
struct SecretKey {
  QString service;
  QString account;

  bool operator==(const SecretKey &) const = default;
  std::weak_ordering operator<=>(const SecretKey &) const = default;
};

} // namespace morvo
