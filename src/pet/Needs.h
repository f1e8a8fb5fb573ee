#pragma once

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

} // namespace morvo
