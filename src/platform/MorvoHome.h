#pragma once

#include "platform/HomeFolder.h"

/// The program's own folder, `~/.morvo`, and what stands where in it.
namespace morvo::MorvoHome {

/// Creates `~/.morvo` and the empty inbox, each if missing, and closes the folder to all but the
/// user. Failures are ignored: they show later as an inbox that cannot be opened, which is tried
/// again at each poll.
void ensure(const HomeFolder &home);

[[nodiscard]] QString directory(const HomeFolder &home);
[[nodiscard]] QString inbox(const HomeFolder &home);
[[nodiscard]] QString hookScript(const HomeFolder &home);
[[nodiscard]] QString permissionScript(const HomeFolder &home);
/// The folder of the answers to permissions.
[[nodiscard]] QString decisions(const HomeFolder &home);
/// The per-persona folder.
[[nodiscard]] QString petDirectory(const HomeFolder &home, const QString &personaId);

} // namespace morvo::MorvoHome
