#include "pet/PackedPicture.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <unordered_map>

namespace morvo {
namespace {

/// Higher levels take several times as long to save a tenth more.
constexpr int compressionLevel = 1;
/// As many as a byte tells apart.
constexpr std::size_t mostColors = 256;

/// The pixels as one run: lines of 32 bits a pixel have no padding.
std::span<const QRgb> pixelsOf(const QImage &image) {
  Q_ASSERT(image.isNull() || image.depth() == 32);
  return {reinterpret_cast<const QRgb *>(image.constBits()),
          static_cast<std::size_t>(image.sizeInBytes()) / sizeof(QRgb)};
}

} // namespace

PackedPicture::PackedPicture(const QImage &image) : m_size(image.size()), m_format(image.format()) {
  if (image.isNull()) {
    return;
  }
  // Drawn frames that are not scaled have few colours, and indices are taken up many times as fast
  // as compressed pixels are.
  if (auto indices = indexed(image)) {
    m_bytes = *std::move(indices);
  } else {
    m_colors.clear();
    m_bytes = qCompress(image.constBits(), image.sizeInBytes(), compressionLevel);
  }
}

std::optional<QByteArray> PackedPicture::indexed(const QImage &image) {
  const auto pixels = pixelsOf(image);
  QByteArray indices;
  indices.reserve(static_cast<qsizetype>(pixels.size()));
  std::unordered_map<QRgb, char> known;
  for (const QRgb pixel : pixels) {
    const auto [color, isNew] = known.try_emplace(pixel, static_cast<char>(known.size()));
    if (known.size() > mostColors) {
      return std::nullopt;
    }
    if (isNew) {
      m_colors.push_back(pixel);
    }
    indices.append(color->second);
  }
  return indices;
}

QImage PackedPicture::unpacked() const {
  QImage image = m_bytes.isEmpty() ? QImage() : QImage(m_size, m_format);
  if (image.isNull()) {
    return {};
  }
  if (!m_colors.empty()) {
    std::ranges::transform(m_bytes, reinterpret_cast<QRgb *>(image.bits()), [this](char index) {
      return m_colors[static_cast<unsigned char>(index)];
    });
    return image;
  }
  const QByteArray pixels = qUncompress(m_bytes);
  if (image.sizeInBytes() != pixels.size()) {
    return {};
  }
  std::memcpy(image.bits(), pixels.constData(), static_cast<std::size_t>(pixels.size()));
  return image;
}

qsizetype PackedPicture::bytes() const {
  return m_bytes.size() + static_cast<qsizetype>(m_colors.size() * sizeof(QRgb));
}

} // namespace morvo
