#pragma once

#include <QString>

#include <optional>

namespace morvo {

/// What an outside command says of one agent's quota.
struct ProbedQuota {
  QString providerId;
  double primaryUsedPct = 0;           ///< 0 to 100.
  std::optional<double> weeklyUsedPct; ///< 0 to 100.
  QString source;                      ///< The command.
  QString plan;                        ///< Perhaps empty.

  bool operator==(const ProbedQuota &) const = default;
};

} // namespace morvo
