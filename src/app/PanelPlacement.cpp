#include "app/PanelPlacement.h"

#include <algorithm>

namespace morvo::PanelPlacement {
namespace {

/// Between the panel and the icon, and between the panel and the screen's edge, in points.
constexpr int gap = 8;

int within(int wanted, int lowest, int highest) {
  return std::max(lowest, std::min(wanted, highest));
}

} // namespace

QPoint origin(QSize panel, const QRect &workArea, const std::optional<QRect> &icon,
              const QPoint &pointer) {
  QPoint wanted(workArea.right() + 1 - panel.width() - gap, workArea.top() + gap);
  const QRect anchor = icon.value_or(QRect(pointer, QSize(1, 1)));
  if (icon || workArea.contains(pointer)) {
    const bool inLowerHalf = anchor.center().y() > workArea.center().y();
    wanted = {anchor.center().x() - panel.width() / 2,
              inLowerHalf ? anchor.top() - gap - panel.height() : anchor.bottom() + 1 + gap};
  }
  return {within(wanted.x(), workArea.left() + gap, workArea.right() + 1 - panel.width() - gap),
          within(wanted.y(), workArea.top() + gap, workArea.bottom() + 1 - panel.height() - gap)};
}

} // namespace morvo::PanelPlacement
