#include "pet/PackedPicture.h"

#include <cstring>

namespace morvo {
namespace {

/// Higher levels take several times as long to save a tenth more.
constexpr int compressionLevel = 1;

} // namespace

PackedPicture::PackedPicture(const QImage &image) : m_size(image.size()), m_format(image.format()) {
  // Lines of 32-bit pixels have no padding, so the picture is one run of bytes.
  Q_ASSERT(image.isNull() || image.depth() == 32);
  if (!image.isNull()) {
    m_bytes = qCompress(image.constBits(), image.sizeInBytes(), compressionLevel);
  }
}

QImage PackedPicture::unpacked() const {
  const QByteArray pixels = m_bytes.isEmpty() ? QByteArray() : qUncompress(m_bytes);
  QImage image = pixels.isEmpty() ? QImage() : QImage(m_size, m_format);
  if (image.sizeInBytes() != pixels.size()) {
    return {};
  }
  std::memcpy(image.bits(), pixels.constData(), static_cast<std::size_t>(pixels.size()));
  return image;
}

} // namespace morvo
