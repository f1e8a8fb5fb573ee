#pragma once

#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <cstdint>

namespace morvo {

/// One picture of a frame set, not decoded: what the stage shows and the painter draws.
struct SpriteFrame {
  /// The file; empty when `picture` is the picture itself.
  QString path;
  /// The time the file was written, in nanoseconds, so that a rewritten file is another frame.
  std::int64_t version = 0;
  /// The part of the picture that is shown, in fractions of it, from its top left corner.
  QRectF crop{0, 0, 1, 1};
  /// Pixels of the shown part, perhaps fractions of one.
  QSizeF size;
  /// A picture that was drawn rather than read; null for a file.
  QImage picture;

  bool operator==(const SpriteFrame &) const = default;
};

} // namespace morvo
