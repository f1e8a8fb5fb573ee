#include "Choreography.h"
#include "ContactSheet.h"
#include "Creature.h"

#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>

// petart FRAMESET FOLDER   writes the frames of one set as FOLDER/0.png, 1.png, …
// petart --icon FILE       writes the program's icon
// petart --sheet FILE      writes all sets on one picture

namespace {

using namespace morvo;

/// A quick level: the frames are made at each clean build and read from the local disk.
constexpr int pngCompression = 25;

int write(const QImage &picture, const QString &path) {
  QImageWriter writer(path, "png");
  writer.setCompression(pngCompression);
  if (!writer.write(picture)) {
    static_cast<void>(std::fprintf(stderr, "petart: %s: %s\n", qUtf8Printable(path),
                                   qUtf8Printable(writer.errorString())));
    return 1;
  }
  return 0;
}

int writeFrames(const Choreography::FrameSet &set, const QString &folder) {
  // Frames of an earlier, longer version of the set must not stay behind.
  QDir directory(folder);
  directory.removeRecursively();
  if (!QDir().mkpath(folder)) {
    static_cast<void>(std::fprintf(stderr, "petart: cannot create %s\n", qUtf8Printable(folder)));
    return 1;
  }
  for (int frame = 0; frame < set.frames; ++frame) {
    const QString path = directory.filePath(QString::number(frame) + QStringLiteral(".png"));
    if (write(Creature::picture(Choreography::poseAt(set, frame)), path) != 0) {
      return 1;
    }
  }
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    static_cast<void>(
        std::fputs("usage: petart FRAMESET FOLDER | --icon FILE | --sheet FILE\n", stderr));
    return 2;
  }
  const QString what = QString::fromLocal8Bit(argv[1]);
  const QString path = QString::fromLocal8Bit(argv[2]);
  if (what == QStringLiteral("--sheet")) {
    return write(ContactSheet::picture(), path);
  }
  if (what == QStringLiteral("--icon")) {
    return write(Creature::picture(Pose{}), path);
  }
  const auto sets = Choreography::frameSets();
  const auto found = std::ranges::find(sets, what, &Choreography::FrameSet::name);
  if (found == sets.end()) {
    static_cast<void>(std::fprintf(stderr, "petart: no frame set %s\n", qUtf8Printable(what)));
    return 2;
  }
  return writeFrames(*found, path);
}
