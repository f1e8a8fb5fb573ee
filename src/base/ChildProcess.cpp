#include "base/ChildProcess.h"

#include <QCoreApplication>
#include <QObject>
#include <QProcess>
#include <QThread>

#include <coroutine>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// What a shell adds to the number of the signal that ended a program.
constexpr int signalExitBase = 128;

/// May be destroyed while its program runs, when the application ends and nobody is there any more
/// to hear of the program's end: a QProcess says so on standard error and waits for 30 seconds.
class Program final : public QProcess {
public:
  Program() = default;
  Program(const Program &) = delete;
  Program &operator=(const Program &) = delete;
  ~Program() override { setProcessState(NotRunning); }
};

/// Keeps the beginning of a stream.
class BoundedBytes {
public:
  explicit BoundedBytes(qsizetype limit) : m_limit(limit) {}

  void append(const QByteArray &bytes) {
    const qsizetype room = m_limit - m_bytes.size();
    m_truncated = m_truncated || bytes.size() > room;
    m_bytes.append(bytes.first(std::min(room, bytes.size())));
  }
  [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }
  [[nodiscard]] bool isTruncated() const { return m_truncated; }

private:
  qsizetype m_limit;
  QByteArray m_bytes;
  bool m_truncated = false;
};

QProcessEnvironment toProcessEnvironment(const Environment &environment) {
  QProcessEnvironment result;
  const auto &variables = environment.variables();
  for (auto each = variables.cbegin(); each != variables.cend(); ++each) {
    result.insert(each.key(), each.value());
  }
  return result;
}

/// In the child: a session of its own, which ends with its leader when `parent` dies, however it
/// does. Only calls that are safe between fork and exec.
void liveNoLongerThan(pid_t parent) {
  ::setsid();
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) {
    // It died before it could be followed.
    ::_exit(EXIT_FAILURE);
  }
}

/// The group has the number of its leader, which stays taken until the leader is reaped and the
/// group is empty.
void signalGroup(qint64 leader, int signal) {
  if (leader <= 0) {
    return;
  }
  const auto process = static_cast<pid_t>(leader);
  if (::kill(-process, signal) != 0) {
    // The child has not made its session yet.
    ::kill(process, signal);
  }
}

/// Only the group: its leader has been reaped, so the number alone may be another process's.
void killGroup(qint64 leader) {
  if (leader > 0) {
    ::kill(-static_cast<pid_t>(leader), SIGKILL);
  }
}

} // namespace

class ChildProcess::Run {
public:
  Run(Scheduler &scheduler, const Command &command, Callback callback)
      : m_scheduler(&scheduler), m_callback(std::move(callback)), m_process(new Program),
        m_output(command.outputLimit), m_error(command.outputLimit), m_mayCrash(command.mayCrash) {
    prepare(command);
    m_deadline = m_scheduler->after(command.deadline, [this] { passDeadline(); });
    m_process->start(command.program, command.arguments);
    m_process->write(command.input);
    m_process->closeWriteChannel();
  }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;
  ~Run() {
    if (m_process != nullptr) {
      abandon();
    }
  }

private:
  void prepare(const Command &command) {
    if (command.environment) {
      m_process->setProcessEnvironment(toProcessEnvironment(*command.environment));
    }
    m_process->setWorkingDirectory(command.workingDirectory);
    m_process->setChildProcessModifier([program = ::getpid()] { liveNoLongerThan(program); });
    QObject::connect(m_process, &QProcess::readyReadStandardOutput, &m_context,
                     [this] { keep(m_output, m_process->readAllStandardOutput()); });
    QObject::connect(m_process, &QProcess::readyReadStandardError, &m_context,
                     [this] { keep(m_error, m_process->readAllStandardError()); });
    QObject::connect(m_process, &QProcess::started, &m_context,
                     [this] { m_leader = m_process->processId(); });
    // A missing program is noticed inside `start`; queued, the callback stays outside of it.
    QObject::connect(
        m_process, &QProcess::errorOccurred, &m_context,
        [this](QProcess::ProcessError error) {
          if (error == QProcess::FailedToStart) {
            deliver(std::unexpected(Failure::notStarted));
          }
        },
        Qt::QueuedConnection);
    QObject::connect(
        m_process, &QProcess::finished, &m_context,
        [this](int exitCode, QProcess::ExitStatus status) { finish(exitCode, status); });
  }

  void keep(BoundedBytes &kept, const QByteArray &bytes) const {
    kept.append(bytes);
    if (kept.isTruncated()) {
      // Its last bytes may come when it has been reaped.
      killGroup(m_leader);
    }
  }

  void passDeadline() {
    m_timedOut = true;
    signalGroup(m_process->processId(), SIGTERM);
    m_kill = m_scheduler->after(grace, [this] { kill(); });
  }

  /// A process that hangs in the kernel outlives even this, and its end is not waited for.
  void kill() {
    signalGroup(m_process->processId(), SIGKILL);
    m_kill = m_scheduler->after(grace, [this] {
      abandon();
      deliver(std::unexpected(Failure::timedOut));
    });
  }

  void finish(int exitCode, QProcess::ExitStatus status) {
    if (m_timedOut) {
      // The child obeyed; what it started may not have.
      killGroup(m_leader);
      deliver(std::unexpected(Failure::timedOut));
      return;
    }
    const bool isCrash = status == QProcess::CrashExit;
    const bool wasFull = m_output.isTruncated() || m_error.isTruncated();
    if (isCrash && !wasFull && !m_mayCrash) {
      deliver(std::unexpected(Failure::killed));
      return;
    }
    m_output.append(m_process->readAllStandardOutput());
    m_error.append(m_process->readAllStandardError());
    // Of a crash, Qt tells the signal's number.
    deliver(Output{.exitCode = isCrash ? signalExitBase + exitCode : exitCode,
                   .standardOutput = m_output.bytes(),
                   .standardError = m_error.bytes(),
                   .truncated = m_output.isTruncated() || m_error.isTruncated()});
  }

  void deliver(Result result) {
    m_deadline.cancel();
    m_kill.cancel();
    // The callback may destroy this run. A failed start that was queued when the run was given up
    // comes too late.
    if (const auto callback = std::exchange(m_callback, nullptr)) {
      callback(std::move(result));
    }
  }

  /// The child is reaped by the event loop, when its end comes.
  void abandon() {
    QProcess *const process = std::exchange(m_process, nullptr);
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
      process->deleteLater();
      return;
    }
    signalGroup(process->processId(), SIGKILL);
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [process](QProcess::ProcessError error) {
                       if (error == QProcess::FailedToStart) {
                         process->deleteLater();
                       }
                     });
    // At the end of the application no event loop runs on.
    if (auto *application = QCoreApplication::instance();
        application != nullptr && application->thread() == QThread::currentThread()) {
      process->setParent(application);
    }
  }

  Scheduler *m_scheduler;
  Callback m_callback;
  Program *m_process; ///< None once it is left to itself.
  BoundedBytes m_output;
  BoundedBytes m_error;
  bool m_mayCrash;
  Scheduler::Timer m_deadline;
  Scheduler::Timer m_kill;
  /// 0 until the program is known to run.
  qint64 m_leader = 0;
  bool m_timedOut = false;
  /// Receives the signals: calls that are queued when the run goes are dropped with it, which
  /// disconnecting would not do.
  QObject m_context;
};

ChildProcess::ChildProcess(Scheduler &scheduler, const Command &command, Callback callback)
    : m_run(std::make_unique<Run>(scheduler, command, std::move(callback))) {}

ChildProcess::~ChildProcess() = default;

namespace {

/// Suspends a coroutine until a run ends or a stop is requested, whichever comes first.
class RunEnd {
public:
  RunEnd(Scheduler &scheduler, ChildProcess::Command command, std::stop_token stop)
      : m_state(std::make_shared<State>(&scheduler, std::move(command), std::move(stop))) {}

  [[nodiscard]] bool await_ready() const noexcept { return m_state->stop.stop_requested(); }

  void await_suspend(std::coroutine_handle<> coroutine) const {
    State *state = m_state.get();
    state->process.emplace(*state->scheduler, state->command,
                           [state, coroutine](ChildProcess::Result result) {
                             state->result = std::move(result);
                             state->onStop.reset();
                             coroutine.resume();
                           });
    state->onStop.emplace(state->stop, [state, coroutine] {
      state->process.reset();
      coroutine.resume();
    });
  }

  [[nodiscard]] std::optional<ChildProcess::Result> await_resume() const {
    return std::move(m_state->result);
  }

private:
  struct State {
    State(Scheduler *owner, ChildProcess::Command program, std::stop_token token)
        : scheduler(owner), command(std::move(program)), stop(std::move(token)) {}

    Scheduler *scheduler;
    ChildProcess::Command command;
    std::stop_token stop;
    std::optional<ChildProcess::Result> result;
    std::optional<ChildProcess> process;
    std::optional<std::stop_callback<std::function<void()>>> onStop;
  };
  // Shared by the copies that GCC 12 makes of an awaiter.
  std::shared_ptr<State> m_state;
};

} // namespace

QCoro::Task<std::optional<ChildProcess::Result>>
ChildProcess::run(Scheduler &scheduler, Command command, std::stop_token stop) {
  const RunEnd end(scheduler, std::move(command), std::move(stop));
  co_return co_await end;
}

} // namespace morvo
