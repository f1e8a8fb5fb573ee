#include "panels/Vital.h"

#include <algorithm>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

/// Below this a vital calls for care.
constexpr int lowValue = 25;

Vital vital(const QString &emoji, const QString &label, double need, Tone tone) {
  // A need that is no number reads as none.
  const int value = need > 0 ? static_cast<int>(std::min(need, 100.0)) : 0;
  return {.emoji = emoji,
          .label = label,
          .value = value,
          .tint = {value < lowValue ? Tone::coral : tone, 1}};
}

} // namespace

QString Vital::text() const { return QStringLiteral("%1%").arg(value); }

QString Vital::help() const {
  return QStringLiteral("%1：%2% · 仅宠物互动影响").arg(label).arg(value);
}

std::array<Vital, 4> Vitals::of(const Needs &needs) {
  return {vital(QStringLiteral("🍖"), QStringLiteral("饱腹"), needs.belly, Tone::krill),
          vital(QStringLiteral("⚡️"), QStringLiteral("精力"), needs.energy, Tone::theme),
          vital(QStringLiteral("💗"), QStringLiteral("亲密"), needs.affinity, Tone::coral),
          vital(QStringLiteral("🔗"), QStringLiteral("羁绊"), needs.bond, Tone::body)};
}

} // namespace morvo
