#pragma once

#include "monitor/QuotaTrust.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace morvo {

/// How much of its quota an agent has used.
struct SourceLoad {
  QString id;
  QString name;
  std::optional<int> usedPct; ///< Of the 5-hour window, 0 to 100.
  std::optional<int> weekPct; ///< Of the week, 0 to 100.
  QuotaTrust trust = QuotaTrust::missing;
  std::int64_t windowTokens = 0;
  std::int64_t weekTokens = 0;

  /// The load in one line, as good as what is known allows.
  [[nodiscard]] QString primaryLine() const;

  bool operator==(const SourceLoad &) const = default;
};

} // namespace morvo
