#include "base/ChildProcess.h"

#include "base/QtScheduler.h"
#include "support/Awaited.h"
#include "support/ManualScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using Failure = ChildProcess::Failure;

ChildProcess::Command shell(const QString &script) {
  ChildProcess::Command command;
  command.program = QStringLiteral("/bin/sh");
  command.arguments = {QStringLiteral("-c"), script};
  return command;
}

ChildProcess::Command program(const QString &name) {
  ChildProcess::Command command;
  command.program = name;
  return command;
}

class ChildProcessTest : public testing::Test {
protected:
  /// Starts it; the deadline passes when the test moves the time.
  void start(const ChildProcess::Command &command) {
    m_run = std::make_unique<ChildProcess>(m_scheduler, command, [this](const auto &result) {
      ++m_calls;
      m_result = result;
      m_events.quit();
    });
  }
  ChildProcess::Result run(const ChildProcess::Command &command) {
    start(command);
    return finish();
  }
  ChildProcess::Result finish() {
    if (!m_result) {
      guarded();
    }
    return m_result.value_or(std::unexpected(Failure::notStarted));
  }
  /// The event loop, which a broken test does not hold up for ever.
  void guarded() {
    const auto guard = m_realTime.after(30s, [this] { m_events.quit(); });
    m_events.exec();
  }
  template <typename Condition> void until(const Condition &condition) {
    const auto poll = m_realTime.every(2ms, [&] {
      if (condition()) {
        m_events.quit();
      }
    });
    if (!condition()) {
      guarded();
    }
  }
  [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
  /// The process number that a script has written into a file, with a line feed behind it.
  [[nodiscard]] pid_t writtenPid(const QString &name) {
    QByteArray text;
    until([&] {
      QFile file(path(name));
      text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
      return text.endsWith('\n');
    });
    return text.trimmed().toInt();
  }
  static bool isGone(pid_t process) {
    QFile state(QStringLiteral("/proc/%1/stat").arg(process));
    if (!state.open(QIODevice::ReadOnly)) {
      return true;
    }
    // An orphan may wait for whoever reaps here.
    const QByteArray text = state.readAll();
    return text.isEmpty() || text.mid(text.lastIndexOf(')') + 2, 1) == "Z";
  }

  QTemporaryDir m_folder;
  test::ManualClock m_clock;
  test::ManualScheduler m_scheduler{m_clock};
  QtScheduler m_realTime;
  QEventLoop m_events;
  std::optional<ChildProcess::Result> m_result;
  int m_calls = 0;
  std::unique_ptr<ChildProcess> m_run;
};

TEST_F(ChildProcessTest, GivesBothOutputsAndTheExitCode) {
  const auto result = run(shell(QStringLiteral("echo out; echo err >&2; exit 3")));
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (ChildProcess::Output{3, "out\n", "err\n", false}));
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(ChildProcessTest, HandsOverStandardInputWhole) {
  auto command = program(QStringLiteral("cat"));
  command.input = QByteArray(3 << 20, 'x') + "end";
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, command.input);
}

TEST_F(ChildProcessTest, AProgramThatReadsNoInputIsNoFailure) {
  auto command = shell(QStringLiteral("exec <&-; echo done"));
  command.input = QByteArray(3 << 20, 'x');
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, "done\n");
}

TEST_F(ChildProcessTest, HasOnlyTheVariablesItIsGiven) {
  auto command = program(QStringLiteral("/usr/bin/env"));
  command.environment = Environment{{{QStringLiteral("ONLY"), QStringLiteral("值")}}};
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(QString::fromUtf8(result->standardOutput), QStringLiteral("ONLY=值\n"));
}

TEST_F(ChildProcessTest, RunsInTheFolderItIsGiven) {
  auto command = program(QStringLiteral("/bin/pwd"));
  command.workingDirectory = m_folder.path();
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(QFile::decodeName(result->standardOutput.trimmed()),
            QDir(m_folder.path()).canonicalPath());
}

TEST_F(ChildProcessTest, AFloodIsKeptUpToTheLimitAndEndsTheProgramWithAllItStarted) {
  const QString flood = QStringLiteral("echo told >&2; sh -c 'echo $$ > %1; exec sleep 600' & "
                                       "while ! [ -s %1 ]; do sleep 0.01; done; "
                                       "trap '' TERM PIPE; while :; do cat /dev/zero; done")
                            .arg(path(QStringLiteral("grandchild")));
  auto command = shell(flood);
  command.outputLimit = 1000;
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, QByteArray(1000, '\0'));
  EXPECT_EQ(result->standardError, "told\n");
  EXPECT_TRUE(result->truncated);
  const pid_t grandchild = writtenPid(QStringLiteral("grandchild"));
  ASSERT_GT(grandchild, 0);
  until([&] { return isGone(grandchild); });
  EXPECT_TRUE(isGone(grandchild));
}

TEST_F(ChildProcessTest, AFloodOnTheStandardErrorIsNoneTheBetter) {
  auto command = shell(QStringLiteral("echo table; cat /dev/zero >&2"));
  command.outputLimit = 1000;
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, "table\n");
  EXPECT_EQ(result->standardError.size(), 1000);
}

TEST_F(ChildProcessTest, OutputOfExactlyTheLimitIsWhole) {
  auto command = shell(QStringLiteral("printf 12345"));
  command.outputLimit = 5;
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, "12345");
  EXPECT_FALSE(result->truncated);
}

TEST_F(ChildProcessTest, AMissingProgramIsTold) {
  const auto result = run(program(QStringLiteral("/nonexistent/program")));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::notStarted);
}

TEST_F(ChildProcessTest, TheCallbackNeverComesFromWithinTheStart) {
  start(program(QStringLiteral("/nonexistent/program")));
  EXPECT_EQ(m_calls, 0);
  EXPECT_FALSE(finish());
  EXPECT_EQ(m_calls, 1);
}

TEST_F(ChildProcessTest, AMissingFolderIsTold) {
  auto command = shell(QStringLiteral("echo x"));
  command.workingDirectory = path(QStringLiteral("missing"));
  const auto result = run(command);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::notStarted);
}

TEST_F(ChildProcessTest, AProgramThatASignalEndsIsTold) {
  const auto result = run(shell(QStringLiteral("kill -SEGV $$")));
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::killed);
}

TEST_F(ChildProcessTest, TheLastWordsOfAProgramThatMayCrashCount) {
  auto command = shell(QStringLiteral("echo last; kill -KILL $$"));
  command.mayCrash = true;
  const auto result = run(command);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (ChildProcess::Output{128 + SIGKILL, "last\n", "", false}));
}

TEST_F(ChildProcessTest, AtTheDeadlineItIsAskedToEnd) {
  start(shell(QStringLiteral("trap 'echo asked > %1; exit 0' TERM; echo $$ > %2; "
                             "while :; do sleep 0.01; done")
                  .arg(path(QStringLiteral("asked")), path(QStringLiteral("pid")))));
  ASSERT_GT(writtenPid(QStringLiteral("pid")), 0);
  m_scheduler.advance(30s);
  const auto result = finish();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::timedOut);
  EXPECT_TRUE(QFile::exists(path(QStringLiteral("asked"))));
}

TEST_F(ChildProcessTest, AProgramThatIgnoresBeingAskedIsKilled) {
  start(shell(QStringLiteral("trap '' TERM; echo $$ > %1; while :; do sleep 0.01; done")
                  .arg(path(QStringLiteral("pid")))));
  const pid_t process = writtenPid(QStringLiteral("pid"));
  ASSERT_GT(process, 0);
  m_scheduler.advance(30s);
  EXPECT_FALSE(isGone(process));
  m_scheduler.advance(ChildProcess::grace);
  const auto result = finish();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::timedOut);
  EXPECT_TRUE(isGone(process));
}

TEST_F(ChildProcessTest, AnEndThatDoesNotComeAfterTheKillingIsNotWaitedFor) {
  start(shell(QStringLiteral("trap '' TERM; echo $$ > %1; while :; do sleep 0.01; done")
                  .arg(path(QStringLiteral("pid")))));
  const pid_t process = writtenPid(QStringLiteral("pid"));
  ASSERT_GT(process, 0);
  // The time passes without the event loop, so nothing is heard of the child's end.
  m_scheduler.advance(30s);
  m_scheduler.advance(ChildProcess::grace);
  EXPECT_EQ(m_calls, 0);
  m_scheduler.advance(ChildProcess::grace);
  EXPECT_EQ(m_calls, 1);
  EXPECT_EQ(m_result, ChildProcess::Result(std::unexpected(Failure::timedOut)));
  until([&] { return isGone(process); });
  EXPECT_EQ(m_calls, 1) << "the late end was told, too";
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(ChildProcessTest, TheDeadlineReachesGrandchildrenThatIgnoreBeingAsked) {
  start(shell(
      QStringLiteral("(trap '' TERM; sh -c 'echo $$ > %1; while :; do sleep 0.01; done') & wait")
          .arg(path(QStringLiteral("pid")))));
  const pid_t grandchild = writtenPid(QStringLiteral("pid"));
  ASSERT_GT(grandchild, 0);
  m_scheduler.advance(30s);
  const auto result = finish();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::timedOut);
  until([&] { return isGone(grandchild); });
  EXPECT_TRUE(isGone(grandchild));
}

TEST_F(ChildProcessTest, AGrandchildThatHoldsThePipesIsNotWaitedFor) {
  start(shell(QStringLiteral("echo early; sh -c 'echo $$ > %1; exec sleep 600' & "
                             "while ! [ -s %1 ]; do sleep 0.01; done")
                  .arg(path(QStringLiteral("pid")))));
  const auto result = finish();
  const pid_t grandchild = writtenPid(QStringLiteral("pid"));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, "early\n");
  ASSERT_GT(grandchild, 0);
  EXPECT_FALSE(isGone(grandchild));
  ::kill(grandchild, SIGKILL);
}

TEST_F(ChildProcessTest, CancellingKillsTheWholeTreeAndTheCallbackNeverComes) {
  start(shell(QStringLiteral("trap '' TERM; echo $$ > %1; sh -c 'echo $$ > %2; exec sleep 600'; :")
                  .arg(path(QStringLiteral("child")), path(QStringLiteral("grandchild")))));
  const pid_t child = writtenPid(QStringLiteral("child"));
  const pid_t grandchild = writtenPid(QStringLiteral("grandchild"));
  ASSERT_GT(grandchild, 0);
  m_run.reset();
  EXPECT_EQ(m_scheduler.pending(), 0U);
  until([&] { return isGone(child) && isGone(grandchild); });
  EXPECT_TRUE(isGone(child));
  EXPECT_TRUE(isGone(grandchild));
  EXPECT_EQ(m_calls, 0);
}

TEST_F(ChildProcessTest, CancellingAtOnceLeavesNothingBehind) {
  for (int round = 0; round < 20; ++round) {
    start(shell(QStringLiteral("sleep 600")));
    m_run.reset();
  }
  EXPECT_EQ(m_calls, 0);
  // This process has no other children.
  until([] {
    QFile children(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
    return children.open(QIODevice::ReadOnly) && children.readAll().isEmpty();
  });
  QFile children(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
  ASSERT_TRUE(children.open(QIODevice::ReadOnly));
  EXPECT_EQ(children.readAll(), QByteArray());
}

TEST_F(ChildProcessTest, ACoroutineGetsTheResult) {
  const auto result =
      test::Awaited(ChildProcess::run(m_scheduler, shell(QStringLiteral("echo x")), {})).wait();
  ASSERT_TRUE(result && *result && **result);
  EXPECT_EQ((**result)->standardOutput, "x\n");
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(ChildProcessTest, ACoroutineHearsOfAFailedStart) {
  const auto result =
      test::Awaited(
          ChildProcess::run(m_scheduler, program(QStringLiteral("/nonexistent/program")), {}))
          .wait();
  ASSERT_TRUE(result && *result);
  EXPECT_EQ(**result, ChildProcess::Result(std::unexpected(Failure::notStarted)));
}

TEST_F(ChildProcessTest, AStopKillsTheWholeTreeAndTheCoroutineGoesOnWithNothing) {
  std::stop_source owner;
  const test::Awaited run(ChildProcess::run(
      m_scheduler,
      shell(QStringLiteral("trap '' TERM; echo $$ > %1; sh -c 'echo $$ > %2; exec sleep 600'; :")
                .arg(path(QStringLiteral("child")), path(QStringLiteral("grandchild")))),
      owner.get_token()));
  const pid_t child = writtenPid(QStringLiteral("child"));
  const pid_t grandchild = writtenPid(QStringLiteral("grandchild"));
  ASSERT_GT(grandchild, 0);
  owner.request_stop();
  ASSERT_TRUE(run.isDone());
  EXPECT_FALSE((*run.wait()).has_value());
  EXPECT_EQ(m_scheduler.pending(), 0U);
  until([&] { return isGone(child) && isGone(grandchild); });
  EXPECT_TRUE(isGone(child) && isGone(grandchild));
}

TEST_F(ChildProcessTest, AfterAStopNothingIsStarted) {
  std::stop_source owner;
  owner.request_stop();
  const test::Awaited run(ChildProcess::run(
      m_scheduler, shell(QStringLiteral("echo > %1").arg(path(QStringLiteral("started")))),
      owner.get_token()));
  ASSERT_TRUE(run.isDone());
  EXPECT_FALSE((*run.wait()).has_value());
  EXPECT_FALSE(QFile::exists(path(QStringLiteral("started"))));
}

/// While it lives, this process opens no further descriptor.
class NoDescriptorLeft {
public:
  NoDescriptorLeft() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_before), 0);
    const int lowestFree = ::dup(STDERR_FILENO);
    EXPECT_GE(lowestFree, 0);
    ::close(lowestFree);
    // Two stay for the sanitizers, which look at memory through a pipe; a start needs more.
    const rlimit few{.rlim_cur = static_cast<rlim_t>(lowestFree) + 2,
                     .rlim_max = m_before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  }
  NoDescriptorLeft(const NoDescriptorLeft &) = delete;
  NoDescriptorLeft &operator=(const NoDescriptorLeft &) = delete;
  ~NoDescriptorLeft() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
  rlimit m_before{};
};

TEST_F(ChildProcessTest, WithoutADescriptorLeftTheProgramIsNotStarted) {
  {
    const NoDescriptorLeft limit;
    start(shell(QStringLiteral("echo x")));
    EXPECT_EQ(m_calls, 0);
  }
  const auto result = finish();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), Failure::notStarted);
}

TEST_F(ChildProcessTest, ARunThatFailedToStartMayGoBeforeItsCallback) {
  {
    const NoDescriptorLeft limit;
    start(shell(QStringLiteral("echo x")));
  }
  m_run.reset();
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(m_calls, 0);
}

TEST_F(ChildProcessTest, TheCallbackOfAFailedStartMayDestroyTheRun) {
  std::unique_ptr<ChildProcess> run;
  {
    const NoDescriptorLeft limit;
    run = std::make_unique<ChildProcess>(m_scheduler, shell(QStringLiteral("echo x")),
                                         [&](const auto &result) {
                                           m_result = result;
                                           run.reset();
                                         });
  }
  QCoreApplication::sendPostedEvents();
  ASSERT_TRUE(m_result);
  EXPECT_FALSE(*m_result);
}

TEST_F(ChildProcessTest, TheCallbackMayDestroyTheRun) {
  std::unique_ptr<ChildProcess> run;
  run = std::make_unique<ChildProcess>(m_scheduler, shell(QStringLiteral("echo x")),
                                       [&](const auto &result) {
                                         m_result = result;
                                         run.reset();
                                         m_events.quit();
                                       });
  guarded();
  ASSERT_TRUE(m_result && *m_result);
  EXPECT_EQ((*m_result)->standardOutput, "x\n");
}

} // namespace
} // namespace morvo
