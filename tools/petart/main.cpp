#include "FrameWriter.h"
#include "PetArt.h"
#include "Sheet.h"

#include <QDir>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>

// SET FOLDER           writes the frames of one set as FOLDER/0.png, 1.png, …
// --icon FILE          writes the rest pose: the program's icon
// --frame SET N FILE   writes one frame, in all its colours
// --sheet FILE         writes all sets on one picture, at the sizes and on the grounds they meet
// --strip SET FILE     writes all frames of one set on one picture

namespace {

using namespace morvo;

int failed(const QString &path, const QString &reason) {
  static_cast<void>(
      std::fprintf(stderr, "petart: %s: %s\n", qUtf8Printable(path), qUtf8Printable(reason)));
  return 1;
}

int writeFull(const QImage &picture, const QString &path) {
  return picture.save(path, "PNG") ? 0 : failed(path, QStringLiteral("cannot be written"));
}

int writeFrames(const FrameSet &set, const QString &folder) {
  // Frames of an earlier, longer version of the set must not stay behind.
  QDir directory(folder);
  directory.removeRecursively();
  if (!QDir().mkpath(folder)) {
    return failed(folder, QStringLiteral("cannot be created"));
  }
  for (int frame = 0; frame < set.frames; ++frame) {
    const QString path = directory.filePath(QString::number(frame) + QStringLiteral(".png"));
    if (const auto written = FrameWriter::write(thePet().picture(set, frame), path); !written) {
      return failed(path, written.error());
    }
  }
  return 0;
}

/// The set of that name; null when the pet has none.
const FrameSet *setOf(const QString &name) {
  const auto sets = thePet().frameSets();
  const auto found = std::ranges::find(sets, name, &FrameSet::name);
  if (found == sets.end()) {
    failed(name, QStringLiteral("no such frame set"));
    return nullptr;
  }
  return &*found;
}

int usage() {
  static_cast<void>(std::fputs("usage: SET FOLDER | --icon FILE | --frame SET N FILE | "
                               "--sheet FILE | --strip SET FILE\n",
                               stderr));
  return 2;
}

int run(const QStringList &words) {
  const PetArt &pet = thePet();
  if (words.size() == 2 && words[0] == QStringLiteral("--icon")) {
    return writeFull(pet.picture(pet.frameSets().front(), 0), words[1]);
  }
  if (words.size() == 2 && words[0] == QStringLiteral("--sheet")) {
    return writeFull(Sheet::contact(pet), words[1]);
  }
  const bool isStrip = words.size() == 3 && words[0] == QStringLiteral("--strip");
  const bool isFrame = words.size() == 4 && words[0] == QStringLiteral("--frame");
  if (!isStrip && !isFrame && words.size() != 2) {
    return usage();
  }
  const FrameSet *set = setOf(isStrip || isFrame ? words[1] : words[0]);
  if (set == nullptr) {
    return 2;
  }
  if (isStrip) {
    return writeFull(Sheet::strip(pet, *set), words[2]);
  }
  if (isFrame) {
    const int frame = words[2].toInt();
    return frame >= 0 && frame < set->frames ? writeFull(pet.picture(*set, frame), words[3])
                                             : usage();
  }
  return writeFrames(*set, words[1]);
}

} // namespace

int main(int argc, char **argv) {
  QStringList words;
  for (int index = 1; index < argc; ++index) {
    words.append(QString::fromLocal8Bit(argv[index]));
  }
  if (words.value(0) != QStringLiteral("--strip")) {
    return run(words);
  }
  // The numbers on a strip need the fonts of an application; no display is asked for.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  return run(words);
}
