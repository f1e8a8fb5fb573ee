#pragma once

#include "monitor/SourceLoad.h"
#include "panels/PanelTint.h"

#include <optional>
#include <vector>

/// How the fullness of the agents' windows is worded and coloured.
namespace morvo::LoadFormat {

/// One window's bar.
struct Bar {
  QString title;
  std::optional<int> pct;
  QString percent; ///< "约 71%"; "暂无" or "—" without a percentage.
  QString tokens;
  PanelTint fill;
  PanelTint percentTint;

  bool operator==(const Bar &) const = default;
};

/// Those with anything to show.
[[nodiscard]] std::vector<SourceLoad> active(const std::vector<SourceLoad> &loads);

[[nodiscard]] Bar bar(const QString &title, std::optional<int> pct, std::int64_t tokens,
                      QuotaTrust trust);
/// The bar of the 5-hour window.
[[nodiscard]] Bar window(const SourceLoad &load);
[[nodiscard]] Bar week(const SourceLoad &load);

[[nodiscard]] PanelTint barColor(std::optional<int> pct, QuotaTrust trust);
[[nodiscard]] PanelTint trustColor(QuotaTrust trust);
[[nodiscard]] QString trustLabel(QuotaTrust trust);
/// What the label means, for those who ask.
[[nodiscard]] QString trustCaption(QuotaTrust trust);

} // namespace morvo::LoadFormat
