#pragma once

#include "companion/LinePack.h"
#include "pet/PetFiles.h"

/// Where a persona's lines are kept.
namespace morvo::LinePackStore {

/// The user's `lines.json` of this persona if it decodes, else the built-in one, else nothing.
[[nodiscard]] std::optional<LinePack> load(const PetFiles &files, const QString &personaId);

} // namespace morvo::LinePackStore
