#include "pet/PetSpritesDebug.h"

#include "pet/MorvoSprites.h"

namespace morvo::PetSpritesDebug {

QString report(const PetFiles &files, const QString &personaId) {
  MorvoSprites sprites(files);
  sprites.setPersona(personaId);
  QString text = QStringLiteral("persona=") + personaId;
  for (const QString &state : sprites.availableStateNames()) {
    const auto onDisk = sprites.diskPNGs(sprites.diskDir(state)).value_or(QStringList());
    text += u' ' + state + QStringLiteral(": ") + QString::number(sprites.frames(state).size()) +
            QStringLiteral(" frames (disk=") + QString::number(onDisk.size()) + u')';
  }
  return text;
}

} // namespace morvo::PetSpritesDebug
