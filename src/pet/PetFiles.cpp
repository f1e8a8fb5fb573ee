#include "pet/PetFiles.h"

#include "platform/MorvoHome.h"

#include <QFileInfo>

#include <algorithm>

namespace morvo {
namespace {

constexpr qsizetype longestName = 255;

} // namespace

QString PetFiles::userDirectory(const QString &personaId) const {
  return MorvoHome::petDirectory(home, personaId);
}

QString PetFiles::resourceDirectory(const QString &personaId) const {
  return resources + QStringLiteral("/pets/") + personaId;
}

QStringList PetFiles::candidates(const QString &personaId, const QString &name) const {
  if (!isPlainName(personaId) || !isPlainName(name)) {
    return {};
  }
  return {userDirectory(personaId) + u'/' + name, resourceDirectory(personaId) + u'/' + name};
}

bool PetFiles::staysIn(const QString &folder, const QString &path) {
  const QString inside = QFileInfo(folder).canonicalFilePath();
  return !inside.isEmpty() && QFileInfo(path).canonicalFilePath().startsWith(inside + u'/');
}

bool PetFiles::isPlainName(const QString &name) {
  return !name.isEmpty() && !name.startsWith(u'.') && name.toUtf8().size() <= longestName &&
         std::ranges::none_of(name, [](QChar character) {
           return character == u'/' || character.category() == QChar::Other_Control;
         });
}

} // namespace morvo
