#pragma once

#include "cloud/Quota.h"
#include "panels/PanelTint.h"

#include <QString>

#include <array>

namespace morvo {

/// One of the bars that tell what is left of the account's quota.
struct QuotaBar {
  QString title;
  QString value; ///< "3/10", "无限", "—".
  double progress = 0;
  bool isUnlimited = false;
  PanelTint fill;
  PanelTint valueTint;

  /// The length of the fill in a bar of that width, in points.
  [[nodiscard]] double fillWidth(double width) const;

  bool operator==(const QuotaBar &) const = default;
};

/// The bars of a quota, in their order.
namespace QuotaBars {

[[nodiscard]] std::array<QuotaBar, 2> of(const Quota &quota);

} // namespace QuotaBars
} // namespace morvo
