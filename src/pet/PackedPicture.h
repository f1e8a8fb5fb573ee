#pragma once

#include <QByteArray>
#include <QImage>

namespace morvo {

/// A picture at rest in a fraction of its memory, cheaper to take up again than a file is to decode
/// and scale. A value.
class PackedPicture {
public:
  /// Nothing.
  PackedPicture() = default;
  /// `image` must have 32 bits a pixel.
  explicit PackedPicture(const QImage &image);

  /// The same pixels in the same format; null when packed from a null picture, or out of memory.
  [[nodiscard]] QImage unpacked() const;
  /// Memory taken.
  [[nodiscard]] qsizetype bytes() const { return m_bytes.size(); }

private:
  QByteArray m_bytes;
  QSize m_size;
  QImage::Format m_format = QImage::Format_Invalid;
};

} // namespace morvo
