#include "base/Clock.h"
#include "monitor/InboxReader.h"
#include "monitor/InboxWatcher.h"
#include "monitor/SignalMailbox.h"
#include "platform/MorvoHome.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace morvo {
namespace {

constexpr int burst = 10000;
constexpr int burstWriters = 50;

/// A hook line as a coding agent's session makes it.
QByteArray hookLine() {
  return R"({"session_id": "0f2d8d3e-7b7e-4a54-9d0b-0d9f6d1f5c11", "transcript_path": )"
         R"("/home/user/.claude/projects/-home-user-project/0f2d8d3e.jsonl", "cwd": )"
         R"("/home/user/project", "hook_event_name": "Stop", "stop_hook_active": false, )"
         R"("_src": "claude"})"
         "\n";
}

/// Appends the line many times, one write each, as the hook scripts do.
void append(const QString &path, const QByteArray &line, int times) {
  const int file =
      ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  for (int i = 0; i < times; ++i) {
    if (::write(file, line.constData(), static_cast<std::size_t>(line.size())) != line.size()) {
      qFatal("the inbox could not be written");
    }
  }
  ::close(file);
}

InboxReader countingReader(const QString &path, int &count) {
  return {path, [&count](const QList<QJsonObject> &, const std::stop_token &) { ++count; }, false,
          [](std::chrono::milliseconds pause, const std::stop_token &) {
            std::this_thread::sleep_for(pause);
          }};
}

/// One tick over a burst of lines, up to the receiver.
void burstInOneTick(benchmark::State &state) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("inbox.jsonl"));
  int count = 0;
  InboxReader reader = countingReader(path, count);
  for (auto _ : state) {
    state.PauseTiming();
    append(path, hookLine(), burst);
    count = 0;
    state.ResumeTiming();
    reader.drain();
    if (count != burst) {
      state.SkipWithError("lines were lost");
    }
  }
  state.SetItemsProcessed(state.iterations() * burst);
}
BENCHMARK(burstInOneTick)->Unit(benchmark::kMillisecond);

/// From the first line of fifty writers at once to the last batch handled on the main thread. The
/// watcher polls each millisecond here, so that the period does not hide the work.
void burstToMainThread(benchmark::State &state) {
  const QTemporaryDir folder;
  const HomeFolder home{folder.path()};
  const SystemClock clock;
  int handled = 0;
  SignalMailbox mailbox(clock, [&](const QList<QJsonObject> &) { ++handled; });
  InboxWatcher watcher(home, {}, mailbox.sender(), std::chrono::milliseconds(1));
  watcher.start();
  for (auto _ : state) {
    handled = 0;
    std::vector<std::jthread> writers;
    for (int i = 0; i < burstWriters; ++i) {
      writers.emplace_back(
          [&] { append(MorvoHome::inbox(home), hookLine(), burst / burstWriters); });
    }
    while (handled < burst) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
  }
  state.SetItemsProcessed(state.iterations() * burst);
}
BENCHMARK(burstToMainThread)->Unit(benchmark::kMillisecond)->UseRealTime();

/// A poll that finds nothing new.
void idlePoll(benchmark::State &state) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("inbox.jsonl"));
  append(path, hookLine(), 1);
  int count = 0;
  InboxReader reader = countingReader(path, count);
  reader.drain();
  for (auto _ : state) {
    reader.drain();
  }
}
BENCHMARK(idlePoll);

/// A figure of /proc/self/status, in megabytes.
double memory(const QByteArray &name) {
  QFile status(QStringLiteral("/proc/self/status"));
  if (status.open(QIODevice::ReadOnly)) {
    for (const QByteArray &line : status.readAll().split('\n')) {
      if (line.startsWith(name)) {
        return line.simplified().split(' ').value(1).toDouble() / 1024;
      }
    }
  }
  return 0;
}

void resetPeakMemory() {
  QFile clear(QStringLiteral("/proc/self/clear_refs"));
  if (!clear.open(QIODevice::WriteOnly) || clear.write("5") != 1) {
    qFatal("the peak of the memory cannot be reset here");
  }
}

/// One tick over a file that grew by a gigabyte of lines.
void gigabyteInOneTick(benchmark::State &state) {
  const QByteArray line =
      R"({"hook_event_name":"PreToolUse","x":")" + QByteArray(state.range(0), 'x') + "\"}\n";
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("inbox.jsonl"));
  append(path, line, static_cast<int>((qint64{1} << 30) / line.size()));
  append(path, hookLine(), 1);
  for (auto _ : state) {
    int count = 0;
    InboxReader reader = countingReader(path, count);
    resetPeakMemory();
    const double before = memory("VmRSS:");
    reader.drain();
    state.counters["MB before"] = before;
    state.counters["MB at most"] = memory("VmHWM:");
    state.counters["MB after"] = memory("VmRSS:");
    if (count != 1) {
      state.SkipWithError("the last line was lost");
    }
  }
  state.SetBytesProcessed(state.iterations() * QFile(path).size());
}
BENCHMARK(gigabyteInOneTick)
    ->ArgName("line bytes")
    ->Arg(300)
    ->Arg(60000)
    ->Arg(5000000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
} // namespace morvo

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
