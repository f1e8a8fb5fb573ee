#include "app/PanelPlacement.h"

#include <algorithm>

namespace morvo::PanelPlacement {
namespace {

/// Between the panel and the icon, and between the panel and the screen's edge, in points.
constexpr int gap = 8;
/// The thickest bar at a screen's edge, in points.
constexpr int beside = 200;

int within(int wanted, int lowest, int highest) {
  return std::max(lowest, std::min(wanted, highest));
}

} // namespace

std::optional<QRect> anchor(const Anchors &anchors) {
  if (anchors.icon) {
    return anchors.icon;
  }
  return anchors.click ? QRect(*anchors.click, QSize(1, 1)) : anchors.pet;
}

QPoint origin(QSize panel, const QRect &workArea, const std::optional<QRect> &anchor) {
  QPoint wanted(workArea.right() + 1 - panel.width() - gap, workArea.top() + gap);
  // An icon may stand in a bar beside the work area.
  const QRect reach = workArea.adjusted(-beside, -beside, beside, beside);
  if (anchor && reach.contains(anchor->center())) {
    const bool inLowerHalf = anchor->center().y() > workArea.center().y();
    wanted = {anchor->center().x() - panel.width() / 2,
              inLowerHalf ? anchor->top() - gap - panel.height() : anchor->bottom() + 1 + gap};
  }
  return {within(wanted.x(), workArea.left() + gap, workArea.right() + 1 - panel.width() - gap),
          within(wanted.y(), workArea.top() + gap, workArea.bottom() + 1 - panel.height() - gap)};
}

} // namespace morvo::PanelPlacement
