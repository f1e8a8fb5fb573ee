#pragma once

#include "companion/PetProfile.h"
#include "pet/PetFiles.h"

/// Where a persona's profile is kept.
namespace morvo::PetProfileStore {

/// The user's `profile.json` of this persona; the empty profile when it is missing or unreadable.
[[nodiscard]] PetProfile load(const PetFiles &files, const QString &personaId);

} // namespace morvo::PetProfileStore
