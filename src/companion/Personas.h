#pragma once

#include "companion/MorvoPersona.h"
#include "pet/PetFiles.h"
#include "platform/SettingsStore.h"

#include <vector>

/// Which personas there are, and which one the user chose. Main thread.
namespace morvo::Personas {

/// The default persona.
[[nodiscard]] const MorvoPersona &morvo();
[[nodiscard]] const MorvoPersona &anime();
/// The built-in personas, in the order they are listed.
[[nodiscard]] const std::vector<MorvoPersona> &presets();

/// The user's own personas. An old store's single persona is moved into the list when it is first
/// read; anything that cannot be decoded counts as none.
[[nodiscard]] std::vector<MorvoPersona> customs(SettingsStore &settings);

/// The persona of that id among presets, then customs.
[[nodiscard]] std::optional<MorvoPersona> find(SettingsStore &settings, const QString &id);
/// The persona that the user chose; the default one when the stored id is unknown. The stored id
/// is left as it is.
[[nodiscard]] MorvoPersona selected(SettingsStore &settings);
/// Stores the choice.
void select(SettingsStore &settings, const QString &id);

/// Gives one of the user's personas another name; an unknown id changes nothing.
void rename(SettingsStore &settings, const QString &id, const QString &name);
/// Takes one of the user's personas off the list, and its folder off the disk. A chosen one leaves
/// the choice to the default persona. An id that is none of the user's changes nothing.
void deleteCustom(SettingsStore &settings, const PetFiles &files, const QString &id);

} // namespace morvo::Personas
