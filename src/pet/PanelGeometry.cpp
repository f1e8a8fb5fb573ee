#include "pet/PanelGeometry.h"

#include <algorithm>
#include <cmath>

namespace morvo::PanelGeometry {
namespace {

constexpr double sideAtFullScale = 200;
constexpr int sideWithoutScale = 280;
/// Room beside the sprite, so that a leaning pet is not cut.
constexpr int sideMargin = 32;
constexpr int rightGap = 16;
constexpr int bottomGap = 70;
constexpr int keepVisible = 48;

} // namespace

int spriteSide(std::optional<double> scale) {
  return scale ? static_cast<int>(std::lround(*scale * sideAtFullScale)) : sideWithoutScale;
}

QSize panelSize(std::optional<double> scale) {
  const int side = spriteSide(scale);
  return {side + sideMargin, side + bubbleArea};
}

QRect defaultPlace(QSize panel, const QRect &workArea) {
  const int right = workArea.x() + workArea.width();
  const int bottom = workArea.y() + workArea.height();
  return {{right - panel.width() - rightGap, bottom - bottomGap - panel.height()}, panel};
}

QRect resized(const QRect &panel, QSize size) {
  const int right = panel.x() + panel.width();
  const int bottom = panel.y() + panel.height();
  return {{right - size.width(), bottom - size.height()}, size};
}

bool isReachable(const QRect &panel, std::span<const QRect> workAreas) {
  return std::ranges::any_of(workAreas, [&panel](const QRect &area) {
    const QRect seen = panel & area;
    return seen.width() >= std::min(keepVisible, panel.width()) &&
           seen.height() >= std::min(keepVisible, panel.height());
  });
}

} // namespace morvo::PanelGeometry
