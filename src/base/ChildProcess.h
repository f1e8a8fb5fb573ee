#pragma once

#include "base/Environment.h"
#include "base/Scheduler.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace morvo {

/// One run of another program, from start to its last word. The object is the run: destroying it
/// kills the program with all it started, and the callback never comes.
///
/// Lives on the thread that made it, whose event loop drives it. Nothing blocks. The kernel kills
/// the program when that thread ends, however it does; so the thread is one that lasts, the main
/// thread.
class ChildProcess {
public:
  struct Command {
    /// A path, or a name looked up in this process's PATH.
    QString program;
    QStringList arguments;
    /// Standard input, closed behind its last byte. A program that does not read it is no failure.
    QByteArray input;
    /// All variables of the program; those of this process when nothing is given.
    std::optional<Environment> environment;
    /// This process's own when empty.
    QString workingDirectory;
    /// From the start; behind it the program is asked to end, then killed.
    Duration deadline = std::chrono::seconds(30);
    /// Bytes kept of each output. A program that writes more is killed with all it started, and
    /// what was kept is the result: to read on would take the time of this thread for nothing.
    qsizetype outputLimit = qsizetype{16} << 20U;
    /// Whether being ended by a signal is an end like any other, for a program whose last words
    /// count however it ended. The exit code is then that of a shell, 128 and the signal's number.
    bool mayCrash = false;
  };

  struct Output {
    int exitCode = 0;
    QByteArray standardOutput;
    QByteArray standardError;
    /// Whether either output was longer than the limit. The exit code means nothing then.
    bool truncated = false;

    bool operator==(const Output &) const = default;
  };

  enum class Failure {
    notStarted, ///< No such program or folder, no permission, no process left.
    killed,     ///< A signal ended it, and it was not a command that may crash.
    timedOut,   ///< It was still running at the deadline.
  };

  using Result = std::expected<Output, Failure>;
  /// May destroy the run.
  using Callback = std::function<void(Result)>;

  /// How long a program has between being asked to end and being killed, and then for its end to be
  /// noticed; one that hangs in the kernel is left to itself after that.
  static constexpr Duration grace = std::chrono::seconds(1);

  /// Starts the program in a session of its own. `scheduler` must outlive the run. `callback` is
  /// called once, never from within this call. The result comes when the program itself ends:
  /// what it left running in the background is not waited for and lives on, except after the
  /// deadline, when all of it is killed.
  ChildProcess(Scheduler &scheduler, const Command &command, Callback callback);
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;
  ~ChildProcess();

  /// The whole run for a coroutine: `const auto result = co_await ChildProcess::run(…)`. Nothing as
  /// soon as `stop` is requested, on this thread: the program is killed with all it started, and
  /// the coroutine must return at once if it outlives its owner.
  [[nodiscard]] static QCoro::Task<std::optional<Result>> run(Scheduler &scheduler, Command command,
                                                              std::stop_token stop);

private:
  class Run;
  std::unique_ptr<Run> m_run;
};

} // namespace morvo
