#include "pet/FrameFile.h"

#include <QFile>
#include <QImageReader>

#include <chrono>
#include <sys/stat.h>

namespace morvo::FrameFile {
namespace {

/// Tried first: asking every image plugin about every frame takes a millisecond a file.
const QByteArray usualFormat = QByteArrayLiteral("png");

bool isSound(QSize size) {
  return !size.isEmpty() && size.width() <= longestSide && size.height() <= longestSide;
}

} // namespace

std::optional<SpriteFrame> probe(const QString &path) {
  struct stat status{};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  const QSize size = QImageReader(path, usualFormat).size();
  if (!isSound(size)) {
    return std::nullopt;
  }
  const auto written = std::chrono::seconds(status.st_mtim.tv_sec) +
                       std::chrono::nanoseconds(status.st_mtim.tv_nsec);
  SpriteFrame frame;
  frame.path = path;
  frame.version = written.count();
  frame.size = size;
  return frame;
}

QImage decode(const QString &path) {
  QImageReader reader(path, usualFormat);
  return isSound(reader.size()) ? reader.read() : QImage();
}

} // namespace morvo::FrameFile
