#pragma once

#include "platform/HomeFolder.h"

#include <QString>
#include <QStringList>

namespace morvo {

/// Where a pet's files stand: the user's own folder first, then the program's resources.
struct PetFiles {
  HomeFolder home;
  /// The folder that holds `pets/<id>/` of the built-in pets.
  QString resources;

  /// `~/.morvo/pets/<id>`.
  [[nodiscard]] QString userDirectory(const QString &personaId) const;
  /// `<resources>/pets/<id>`.
  [[nodiscard]] QString resourceDirectory(const QString &personaId) const;
  /// The file's path in both folders, in the order they are to be tried; empty when the id or the
  /// name is no plain file name, so that no data from outside leads out of the pet's folder.
  [[nodiscard]] QStringList candidates(const QString &personaId, const QString &name) const;

  /// Whether the path, its links followed, lies inside the folder.
  [[nodiscard]] static bool staysIn(const QString &folder, const QString &path);
  /// Not empty, at most 255 bytes, no slash, no control character, no dot in front.
  [[nodiscard]] static bool isPlainName(const QString &name);
};

} // namespace morvo
