#include "FrameWriter.h"

#include "Palette.h"

#include <QImageWriter>

namespace morvo::FrameWriter {
namespace {

/// The best level: one byte a pixel is packed fast enough.
constexpr int pngCompression = 100;
/// Written into every file. Without it Qt takes the screen's, where there is one.
constexpr int dotsPerMetre = 3780;

} // namespace

std::expected<void, QString> write(const QImage &picture, const QString &path) {
  QImageWriter writer(path, "png");
  writer.setCompression(pngCompression);
  QImage reduced = Palette::reduced(picture);
  reduced.setDotsPerMeterX(dotsPerMetre);
  reduced.setDotsPerMeterY(dotsPerMetre);
  if (!writer.write(reduced)) {
    return std::unexpected(writer.errorString());
  }
  return {};
}

} // namespace morvo::FrameWriter
