#pragma once

#include "monitor/HookContext.h"
#include "monitor/HookError.h"

#include <QStringList>

/// The two scripts that agents run: `~/.morvo/hook.sh` forwards an event to the inbox,
/// `~/.morvo/perm.sh` asks for an approval and waits for the answer.
namespace morvo::HookScript {

/// Writes both scripts, atomically, mode 0755, and the folder and inbox they append to. The path of
/// `hook.sh`.
[[nodiscard]] std::expected<QString, HookError> install(const HookContext &context);

/// Whether `hook.sh` exists.
[[nodiscard]] bool alreadyInstalled(const HomeFolder &home);

/// The command an agent runs: the script's absolute path, a blank, the source name. It is also how
/// the program recognises its own entries, so it is not quoted.
[[nodiscard]] QString command(const QString &scriptPath, const QString &source);

/// A Chinese sentence when the interpreter of the scripts is missing.
[[nodiscard]] QStringList interpreterObstacles(const HookContext &context);
/// What keeps the installed `hook.sh` from being run, as Chinese sentences.
[[nodiscard]] QStringList scriptObstacles(const HookContext &context);
/// The same of `perm.sh`.
[[nodiscard]] QStringList permissionObstacles(const HookContext &context);

/// What keeps the scripts from writing into the inbox that the program reads, as Chinese sentences.
[[nodiscard]] QStringList inboxObstacles(const HookContext &context);

/// The text of `hook.sh`.
[[nodiscard]] QByteArray eventScript();
/// The text of `perm.sh`.
[[nodiscard]] QByteArray permissionScript();

} // namespace morvo::HookScript
