#include "pet/AlphaBounds.h"

#include <algorithm>
#include <span>

namespace morvo::AlphaBounds {
namespace {

/// Alpha up to this is no content, out of 255.
constexpr int faintestContent = 16;

} // namespace

QRect pixels(const QImage &image, int faintest) {
  const QImage argb = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const auto isContent = [faintest](QRgb pixel) { return qAlpha(pixel) > faintest; };
  int left = argb.width();
  int right = -1;
  int top = argb.height();
  int bottom = -1;
  for (int y = 0; y < argb.height(); ++y) {
    const auto *const begin = reinterpret_cast<const QRgb *>(argb.constScanLine(y));
    const auto *const end = begin + argb.width();
    const auto *const first = std::find_if(begin, end, isContent);
    if (first == end) {
      continue;
    }
    const auto *last = end - 1;
    while (!isContent(*last)) {
      --last;
    }
    left = std::min(left, static_cast<int>(first - begin));
    right = std::max(right, static_cast<int>(last - begin));
    top = std::min(top, y);
    bottom = y;
  }
  return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

int strongest(const QImage &image) {
  const QImage argb = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  constexpr int solid = 255;
  int most = 0;
  for (int y = 0; y < argb.height() && most < solid; ++y) {
    const auto *const begin = reinterpret_cast<const QRgb *>(argb.constScanLine(y));
    for (const QRgb pixel : std::span(begin, static_cast<std::size_t>(argb.width()))) {
      most = std::max(most, qAlpha(pixel));
    }
  }
  return most;
}

std::optional<QRectF> normalised(const QImage &image, int longestSide) {
  if (image.isNull()) {
    return std::nullopt;
  }
  const double scale =
      std::min(static_cast<double>(longestSide) / std::max(image.width(), image.height()), 1.0);
  const int width = std::max(static_cast<int>(image.width() * scale), 1);
  const int height = std::max(static_cast<int>(image.height() * scale), 1);
  const QImage small =
      image.size() == QSize(width, height)
          ? image
          : image.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const QRectF box = pixels(small, faintestContent);
  if (box.isEmpty()) {
    return std::nullopt;
  }
  return QRectF(box.x() / width, box.y() / height, box.width() / width, box.height() / height);
}

std::optional<QRectF> united(const std::optional<QRectF> &a, const std::optional<QRectF> &b) {
  return a && b ? std::optional(a->united(*b)) : (a ? a : b);
}

} // namespace morvo::AlphaBounds
