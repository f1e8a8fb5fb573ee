#pragma once

#include "pet/PetFiles.h"
#include "pet/PetPack.h"

#include <optional>

/// Where pet packs are kept.
namespace morvo::PetPackStore {

/// The user's pack of this persona if it can be read and decoded, else the built-in one, else
/// nothing. Looks at the file on each call, so a rewritten pack acts at its next use,
/// but decodes it only when it has changed. Thread-safe; each thread decodes for itself.
[[nodiscard]] std::optional<PetPack> load(const PetFiles &files, const QString &personaId);

/// Writes the user's pack atomically, creating its folder. Reports nothing: whoever needs to know
/// reads it back.
void save(const PetFiles &files, const PetPack &pack, const QString &personaId);

} // namespace morvo::PetPackStore
