#include "pet/InkRegion.h"

#include <algorithm>
#include <vector>

namespace morvo::InkRegion {
namespace {

struct Grid {
  const QImage &image;
  double scale;
  int alpha;
  int cell;

  [[nodiscard]] const QRgb *line(int top) const {
    const int y = static_cast<int>((top + cell / 2.0) * scale);
    return reinterpret_cast<const QRgb *>(image.constScanLine(std::min(y, image.height() - 1)));
  }
  [[nodiscard]] bool isInk(const QRgb *line, int left) const {
    const int x = static_cast<int>((left + cell / 2.0) * scale);
    return qAlpha(line[std::min(x, image.width() - 1)]) >= alpha;
  }
};

void appendRow(const Grid &grid, const QRect &area, int top, std::vector<QRect> &rects) {
  const QRgb *line = grid.line(top);
  const int right = area.x() + area.width();
  const int height = std::min(grid.cell, area.y() + area.height() - top);
  int start = right;
  for (int left = area.x(); left < right; left += grid.cell) {
    const bool ink = grid.isInk(line, left);
    if (ink && start == right) {
      start = left;
    } else if (!ink && start != right) {
      rects.emplace_back(start, top, left - start, height);
      start = right;
    }
  }
  if (start != right) {
    rects.emplace_back(start, top, right - start, height);
  }
}

/// Lets the row above reach down over the last row when both have the same ink: fewer rectangles,
/// and the one form in which equal regions compare equal. `above` and `last` are where the two
/// rows begin; gives where the last row begins afterwards.
std::size_t merged(std::vector<QRect> &rects, std::size_t above, std::size_t last) {
  const auto sameInk = [](const QRect &upper, const QRect &lower) {
    return upper.x() == lower.x() && upper.width() == lower.width() &&
           upper.y() + upper.height() == lower.y();
  };
  const auto upper = rects.begin() + static_cast<std::ptrdiff_t>(above);
  const auto lower = rects.begin() + static_cast<std::ptrdiff_t>(last);
  if (lower == rects.end() || !std::equal(upper, lower, lower, rects.end(), sameInk)) {
    return last;
  }
  const int height = lower->height();
  rects.erase(lower, rects.end());
  for (std::size_t index = above; index < rects.size(); ++index) {
    rects[index].setHeight(rects[index].height() + height);
  }
  return above;
}

} // namespace

QRegion of(const QImage &image, const QRect &area, int alpha, int cell) {
  if (image.format() != QImage::Format_ARGB32_Premultiplied &&
      image.format() != QImage::Format_ARGB32) {
    return area;
  }
  const double scale = image.devicePixelRatio();
  const QRect inside = area & QRect(QPoint(), (QSizeF(image.size()) / scale).toSize());
  const Grid grid{image, scale, alpha, cell};
  std::vector<QRect> rects;
  std::size_t row = 0;
  for (int top = inside.y(); top < inside.y() + inside.height(); top += cell) {
    const std::size_t next = rects.size();
    appendRow(grid, inside, top, rects);
    row = merged(rects, row, next);
  }
  QRegion region;
  region.setRects(rects.data(), static_cast<int>(rects.size()));
  return region;
}

} // namespace morvo::InkRegion
