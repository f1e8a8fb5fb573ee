#include "base/Clock.h"
#include "monitor/FleetScanner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace morvo {
namespace {

constexpr int logBytes = 1 << 20;
constexpr std::chrono::hours oldAge{48};

/// A turn as Claude Code logs it, with a tool's result of a usual length.
QByteArray turn(int number) {
  return R"({"type":"user","cwd":"/home/user/project)" + QByteArray::number(number) +
         R"(","message":{"role":"user","content":[{"type":"tool_result","content":")" +
         QByteArray(4000, 'x') + R"("}]}})" + "\n" +
         R"({"type":"assistant","cwd":"/home/user/project","message":{"stop_reason":"tool_use"}})" +
         "\n";
}

void put(const QString &path, const QByteArray &text, std::chrono::seconds age) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
    qFatal("a log could not be written");
  }
  file.close();
  const auto at = SystemClock().now() - age;
  const timespec stamp{.tv_sec =
                           std::chrono::floor<std::chrono::seconds>(at.time_since_epoch()).count()};
  const std::array stamps{stamp, stamp};
  if (::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), stamps.data(), 0) != 0) {
    qFatal("a log's date could not be set");
  }
}

/// `recent` logs of each agent among 650 old ones.
void fill(const QTemporaryDir &home, int recent) {
  constexpr int oldLogs = 650;
  const QDir root(home.path());
  const QString claude = home.filePath(QStringLiteral(".claude/projects/-home-user-project/"));
  const QString codex = home.filePath(QStringLiteral(".codex/sessions/2026/03/10/"));
  root.mkpath(claude);
  root.mkpath(codex);
  for (int number = 0; number < oldLogs; ++number) {
    put(claude + QStringLiteral("old%1.jsonl").arg(number), "{}\n", oldAge);
  }
  for (int number = 0; number < recent; ++number) {
    QByteArray text;
    while (text.size() < logBytes) {
      text += turn(number);
    }
    put(claude + QStringLiteral("new%1.jsonl").arg(number), text, std::chrono::seconds(60));
    put(codex + QStringLiteral("new%1.jsonl").arg(number), text, std::chrono::seconds(60));
  }
}

void scan(benchmark::State &state) {
  const QTemporaryDir home;
  fill(home, static_cast<int>(state.range(0)));
  for (auto _ : state) {
    auto found = FleetScanner::scan({home.path()}, SystemClock().now());
    benchmark::DoNotOptimize(found);
  }
}

BENCHMARK(scan)->Arg(0)->Arg(4)->Arg(80)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace morvo

BENCHMARK_MAIN();
