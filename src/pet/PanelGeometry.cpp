#include "pet/PanelGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace morvo::PanelGeometry {
namespace {

constexpr double sideAtFullScale = 200;
constexpr int sideWithoutScale = 280;
/// Room beside the sprite, so that a leaning pet is not cut.
constexpr int sideMargin = 32;
static_assert(spriteKeepVisible == standardKeepVisible - sideMargin / 2);
constexpr int rightGap = 16;
constexpr int bottomGap = 70;

/// The coordinate taken into the range, or left alone where there is none.
int within(int coordinate, int lower, int upper) {
  return lower > upper ? coordinate : std::clamp(coordinate, lower, upper);
}

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

QPoint recoveredOrigin(const QRect &panel, const QRect &workArea, int keepVisible) {
  return {within(panel.x(), workArea.x() + keepVisible - panel.width(),
                 workArea.x() + workArea.width() - keepVisible),
          within(panel.y(), workArea.y() + keepVisible - panel.height(),
                 workArea.y() + workArea.height() - keepVisible)};
}

std::optional<std::size_t> screenOf(const QRect &panel, std::span<const QRect> frames) {
  std::optional<std::size_t> best;
  std::int64_t most = 0;
  for (std::size_t index = 0; index < frames.size(); ++index) {
    const QRect seen = panel & frames[index];
    const std::int64_t area = seen.isEmpty() ? 0 : std::int64_t{seen.width()} * seen.height();
    if (area > most) {
      most = area;
      best = index;
    }
  }
  return best;
}

QRect spriteSquare(const QRect &panel) {
  const int side = panel.height() - bubbleArea;
  return {panel.x() + sideMargin / 2, panel.y() + bubbleArea, side, side};
}

QPoint reachableOrigin(const QRect &panel, const QRect &workArea) {
  const QRect square = spriteSquare(panel);
  return panel.topLeft() + recoveredOrigin(square, workArea, spriteKeepVisible) - square.topLeft();
}

bool isReachable(const QRect &panel, std::span<const QRect> workAreas) {
  return std::ranges::any_of(workAreas, [square = spriteSquare(panel)](const QRect &area) {
    const QRect seen = square & area;
    return seen.width() >= spriteKeepVisible && seen.height() >= spriteKeepVisible;
  });
}

} // namespace morvo::PanelGeometry
