#include "pet/FrameFile.h"

#include "pet/RegularFile.h"

#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <chrono>

namespace morvo::FrameFile {
namespace {

/// The only format of frames. Asking every image plugin about every file takes a millisecond, and
/// hands bytes from outside to far more code.
const QByteArray frameFormat = QByteArrayLiteral("png");
/// The last chunk of every whole picture: no content, and the checksum of that.
const QByteArray lastChunk("\0\0\0\0IEND\xae\x42\x60\x82", 12);
/// How far from the end of the file the last chunk may begin; some writers leave bytes behind it.
constexpr qint64 longestTail = 4096;

/// Whether the header tells of a picture that can be decoded within the limits.
bool isSound(const QImageReader &reader) {
  const QSize size = reader.size();
  if (size.isEmpty() || size.width() > longestSide || size.height() > longestSide) {
    return false;
  }
  // Everything is turned to 32 bits a pixel in the end, and deeper pictures are not decoded so.
  const qint64 bits =
      std::max<qint64>(QImage::toPixelFormat(reader.imageFormat()).bitsPerPixel(), 32);
  return qint64{size.width()} * size.height() * (bits / 8) <= mostBytes;
}

/// Whether the file was written to its end.
bool isWhole(QFile &file) {
  return file.seek(std::max<qint64>(file.size() - longestTail, 0)) &&
         file.read(longestTail).contains(lastChunk);
}

} // namespace

std::optional<SpriteFrame> probe(const QString &path) {
  QFile file;
  const auto status = RegularFile::open(path, file);
  if (!status) {
    return std::nullopt;
  }
  // Before anything else, so that an empty or torn file is not worth a complaint of the decoder.
  if (!isWhole(file) || !file.seek(0)) {
    return std::nullopt;
  }
  QImageReader reader(&file, frameFormat);
  reader.setAutoDetectImageFormat(false);
  const QSize size = reader.size();
  if (!isSound(reader)) {
    return std::nullopt;
  }
  const auto written = std::chrono::seconds(status->st_mtim.tv_sec) +
                       std::chrono::nanoseconds(status->st_mtim.tv_nsec);
  SpriteFrame frame;
  frame.path = path;
  frame.version = written.count();
  frame.size = size;
  return frame;
}

QImage decode(const QString &path) {
  QFile file;
  if (!RegularFile::open(path, file) || !isWhole(file) || !file.seek(0)) {
    return {};
  }
  QImageReader reader(&file, frameFormat);
  reader.setAutoDetectImageFormat(false);
  return isSound(reader) ? reader.read() : QImage();
}

} // namespace morvo::FrameFile
