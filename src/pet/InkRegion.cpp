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
  for (int top = inside.y(); top < inside.y() + inside.height(); top += cell) {
    appendRow(grid, inside, top, rects);
  }
  QRegion region;
  region.setRects(rects.data(), static_cast<int>(rects.size()));
  return region;
}

} // namespace morvo::InkRegion
