#include "pet/ContentFile.h"
#include "pet/MenubarFrames.h"
#include "pet/MorvoSprites.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstdio>

// petmeasure RESOURCES PET   decodes the frames of a built-in pet once and keeps beside them what
//                            the program would have to decode them for: their crop square and the
//                            cells of the menu-bar icons

namespace {

using namespace morvo;

bool writeSquare(const PetFiles &files, const QString &pet) {
  MorvoSprites sprites(files);
  sprites.setPersona(pet);
  return ContentFile::write(files.resourceDirectory(pet), sprites.measuredContentRect());
}

bool writeIcons(const PetFiles &files, const QString &pet) {
  QDir folder(MenubarFrames::bakedFolder(files, pet));
  // Icons of an earlier, longer set must not stay behind.
  folder.removeRecursively();
  if (!QDir().mkpath(folder.path())) {
    return false;
  }
  int index = 0;
  for (const QImage &cells : MenubarFrames(files).cells(pet)) {
    if (!cells.save(folder.filePath(QStringLiteral("%1.png").arg(index++)), "PNG")) {
      return false;
    }
  }
  return true;
}

} // namespace

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  // No pet of the user's stands in a home that is empty.
  const QTemporaryDir home;
  if (argc != 3 || !home.isValid()) {
    static_cast<void>(std::fputs("usage: petmeasure RESOURCES PET\n", stderr));
    return 2;
  }
  const PetFiles files{.home = HomeFolder{home.path()},
                       .resources = QString::fromLocal8Bit(argv[1])};
  const QString pet = QString::fromLocal8Bit(argv[2]);
  if (!writeSquare(files, pet) || !writeIcons(files, pet)) {
    static_cast<void>(std::fprintf(stderr, "petmeasure: cannot write in %s\n", argv[1]));
    return 1;
  }
  return 0;
}
