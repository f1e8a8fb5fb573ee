#pragma once

#include "base/Time.h"

#include <cstdint>

namespace morvo {

/// What an agent's log says was used at one moment.
struct TokenEvent {
  WallTime ts;
  std::int64_t billable = 0;  ///< Tokens that count against a quota.
  std::int64_t cacheRead = 0; ///< Tokens served from a cache; never part of `billable`.
  double cost = 0;            ///< Estimated US dollars.
  bool burnable = false;      ///< The time is exact enough to enter the burn rate.

  bool operator==(const TokenEvent &) const = default;
};

} // namespace morvo
