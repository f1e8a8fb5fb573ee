#include "panels/QuotaBar.h"

#include <algorithm>
#include <optional>

namespace morvo {
namespace {

constexpr int highestRealLimit = 999999;
constexpr double leastFill = 4;

QuotaBar bar(const QString &title, PanelTint::Tone tone, int limit, int used,
             std::optional<double> told) {
  const bool isUnlimited = limit > highestRealLimit;
  QString value = QStringLiteral("—");
  if (isUnlimited) {
    value = QStringLiteral("无限");
  } else if (limit >= 1) {
    value = QStringLiteral("%1/%2").arg(used).arg(limit);
  }
  const double own =
      limit >= 1 ? std::min(static_cast<double>(used) / static_cast<double>(limit), 1.0) : 0;
  const double progress = told.value_or(own);
  const bool isSpent = progress >= 1 && !isUnlimited;
  return {.title = title,
          .value = value,
          .progress = progress,
          .isUnlimited = isUnlimited,
          .fill = isSpent ? PanelTint{PanelTint::Tone::coral, 0.85} : PanelTint{tone, 0.75},
          .valueTint = isSpent ? PanelTint{PanelTint::Tone::coral, 1}
                               : PanelTint{PanelTint::Tone::foam, 0.55}};
}

/// Remaining figures come from outside, and may be any number.
int spent(int limit, int remaining) {
  const auto used = static_cast<qint64>(limit) - remaining;
  return limit >= 1 ? static_cast<int>(std::clamp<qint64>(used, 0, INT32_MAX)) : 0;
}

} // namespace

double QuotaBar::fillWidth(double width) const {
  return isUnlimited ? width : std::min(width, std::max(leastFill, width * progress));
}

std::array<QuotaBar, 2> QuotaBars::of(const Quota &quota) {
  const int talks = quota.conversationLimit.value_or(0);
  const int pets = quota.petGenLimit.value_or(0);
  return {bar(QStringLiteral("对话"), PanelTint::Tone::theme, talks,
              spent(talks, quota.conversationsRemaining), quota.conversationProgress()),
          bar(QStringLiteral("造宠"), PanelTint::Tone::body, pets,
              quota.petGensRemaining ? spent(pets, *quota.petGensRemaining) : 0,
              quota.petGenProgress())};
}

} // namespace morvo
