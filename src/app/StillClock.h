#pragma once

#include "base/Clock.h"

namespace morvo {

/// Stands still, so that a picture depends on what was asked for alone.
class StillClock final : public Clock {
public:
  [[nodiscard]] WallTime now() const override { return {}; }
  [[nodiscard]] Instant instant() const override { return {}; }
};

} // namespace morvo
