#include "FrameWriter.h"

#include "Palette.h"

#include <QImageWriter>

namespace morvo::FrameWriter {
namespace {

/// The best level: one byte a pixel is packed fast enough.
constexpr int pngCompression = 100;

} // namespace

std::expected<void, QString> write(const QImage &picture, const QString &path) {
  QImageWriter writer(path, "png");
  writer.setCompression(pngCompression);
  if (!writer.write(Palette::reduced(picture))) {
    return std::unexpected(writer.errorString());
  }
  return {};
}

} // namespace morvo::FrameWriter
