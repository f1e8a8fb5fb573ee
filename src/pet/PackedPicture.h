#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>
#include <vector>

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
  [[nodiscard]] qsizetype bytes() const;

private:
  /// Of a picture of few colours: the colour of each pixel as an index of `m_colors`; nothing for
  /// any other.
  [[nodiscard]] std::optional<QByteArray> indexed(const QImage &image);

  /// The colours, where the picture has few; else empty.
  std::vector<QRgb> m_colors;
  /// A byte a pixel, or all pixels compressed.
  QByteArray m_bytes;
  QSize m_size;
  QImage::Format m_format = QImage::Format_Invalid;
};

} // namespace morvo
