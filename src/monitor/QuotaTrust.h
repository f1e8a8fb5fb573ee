#pragma once

#include <QString>

namespace morvo {

/// Where a percentage of a quota comes from.
enum class QuotaTrust {
  live,       ///< Read from the agent's real limits.
  calibrated, ///< Estimated from history.
  metered,    ///< Only a local count.
  missing,
};

/// "live", "calibrated", …
[[nodiscard]] QString rawValue(QuotaTrust trust);

} // namespace morvo
