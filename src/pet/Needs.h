#pragma once

#include <QJsonObject>

#include <optional>

namespace morvo {

/// The pet's bodily state, each from 0 to 100. Lives only in memory: every launch begins with
/// these values.
struct Needs {
  double belly = 80;
  double energy = 80;
  double affinity = 80;
  /// Raised by petting only.
  double bond = 0;

  bool operator==(const Needs &) const = default;
};

/// Nothing unless all four are there and numbers. They are taken as they are, also beyond 0 to 100.
[[nodiscard]] std::optional<Needs> needsFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const Needs &needs);

} // namespace morvo
