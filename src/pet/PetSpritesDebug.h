#pragma once

#include "pet/PetFiles.h"

/// What the program finds of a pet's frames, for whoever wonders why a pet does not move.
namespace morvo::PetSpritesDebug {

/// "persona=" with the id, then for each state its name, how many frames can be shown, and how many
/// picture files the user's folder of that state holds.
[[nodiscard]] QString report(const PetFiles &files, const QString &personaId);

} // namespace morvo::PetSpritesDebug
