#pragma once

#include "base/ChildProcess.h"
#include "base/Environment.h"
#include "base/Scheduler.h"
#include "platform/HomeFolder.h"

#include <QCoroTask>
#include <QStringList>

#include <optional>
#include <stop_token>

/// Finding and running the agents' own commands.
namespace morvo::ProbeCLI {

/// Whether the agents' commands may be run: `MORVO_DISABLE_CLI_PROBES` is not "1".
[[nodiscard]] bool enabled(const Environment &environment);

/// The absolute path of the command: what `MORVO_<NAME>_PATH` names, else the first executable file
/// of that name in the folders of `PATH` (of the usual places when it is not set). Looks at the
/// disk: not for the main thread.
[[nodiscard]] std::optional<QString> locate(const QString &name, const Environment &environment,
                                            const HomeFolder &home);

/// The folders in which an agent's command is sought: those of `PATH`, even if it is empty; without
/// one the usual places and the home's own.
[[nodiscard]] QString foldersOf(const Environment &environment, const HomeFolder &home);
/// The first executable file `name` in a list of folders separated by ":"; an empty one is
/// the root.
[[nodiscard]] std::optional<QString> firstExecutable(const QString &name, const QString &folders);
/// The path, made absolute, if it names an executable file.
[[nodiscard]] std::optional<QString> executable(const QString &path);

struct Run {
  QString executable;
  QStringList arguments;
  Duration timeout{};
  Environment environment;
};

/// What the command wrote, however it ended and up to a bound. Nothing when it could not be started
/// or was still running at the timeout, when it is ended with all it started, or when `stop` was
/// requested. It runs in the root folder, so that a log which it writes of itself belongs to none
/// of the user's projects.
[[nodiscard]] QCoro::Task<std::optional<ChildProcess::Output>>
output(Scheduler &scheduler, Run command, std::stop_token stop);

/// The same as text: its standard output, or else its standard error. Nothing when it wrote
/// nothing.
[[nodiscard]] QCoro::Task<std::optional<QString>> run(Scheduler &scheduler, Run command,
                                                      std::stop_token stop);

} // namespace morvo::ProbeCLI
