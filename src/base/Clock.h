#pragma once

#include "base/Time.h"

namespace morvo {

/// Tells the time. Handed in wherever time matters, so that tests own it. Thread-safe.
class Clock {
public:
  virtual ~Clock() = default;

  /// Calendar time, for what is stored or shown.
  [[nodiscard]] virtual WallTime now() const = 0;
  /// Elapsed time since boot, suspend included, for intervals.
  [[nodiscard]] virtual Instant instant() const = 0;
};

/// The machine's clocks.
class SystemClock final : public Clock {
public:
  [[nodiscard]] WallTime now() const override;
  [[nodiscard]] Instant instant() const override;
};

} // namespace morvo
