#include "base/Clock.h"
#include "base/SystemFileLayer.h"
#include "usage/AccountReader.h"
#include "usage/UsageReader.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace morvo {
namespace {

constexpr double week = 168;
/// Runs of which the median counts.
constexpr int runs = 21;
constexpr int appendedLines = 100;

void scan(UsageReader &reader, std::size_t &events) {
  events = reader.claudeEvents(week).size() + reader.codexEvents(week).size();
}

/// What some work took, in milliseconds: on the clock, and of the processors.
struct Cost {
  double wall = 0;
  double processor = 0;
};

double milliseconds(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

Cost costOf(const std::function<void()> &work) {
  const Cost begin{.wall = milliseconds(CLOCK_MONOTONIC),
                   .processor = milliseconds(CLOCK_PROCESS_CPUTIME_ID)};
  work();
  return {.wall = milliseconds(CLOCK_MONOTONIC) - begin.wall,
          .processor = milliseconds(CLOCK_PROCESS_CPUTIME_ID) - begin.processor};
}

/// The medians of the runs, each after its preparation.
Cost median(const std::function<void()> &prepare, const std::function<void()> &work) {
  std::vector<double> walls;
  std::vector<double> processors;
  for (int i = 0; i < runs; ++i) {
    prepare();
    const Cost cost = costOf(work);
    walls.push_back(cost.wall);
    processors.push_back(cost.processor);
  }
  std::ranges::sort(walls);
  std::ranges::sort(processors);
  return {.wall = walls[runs / 2], .processor = processors[runs / 2]};
}

/// The largest of Claude Code's logs, so that its length would show.
std::filesystem::path largestLog(const std::filesystem::path &home) {
  std::filesystem::path largest;
  std::uintmax_t size = 0;
  for (const auto &entry :
       std::filesystem::recursive_directory_iterator(home / ".claude" / "projects")) {
    if (entry.is_regular_file() && entry.file_size() > size) {
      size = entry.file_size();
      largest = entry.path();
    }
  }
  return largest;
}

/// Appends lines that the log's own agent might have written, one write each.
void append(const std::filesystem::path &log) {
  const std::string line =
      R"({"message":{"model":"claude-sonnet-4-5","role":"assistant","content":[{"type":"text",)"
      R"("text":")" +
      std::string(1500, 'x') +
      R"("}],"usage":{"input_tokens":3,"output_tokens":5}},"type":"assistant","timestamp":")" +
      "2999-01-01T00:00:00.000Z\"}\n";
  std::ofstream file(log, std::ios::app);
  for (int i = 0; i < appendedLines; ++i) {
    file << line << std::flush;
  }
}

/// A first scan, as a start of the program makes it.
int first(const HomeFolder &home) {
  const SystemClock clock;
  UsageReader reader(home, clock);
  std::size_t events = 0;
  const Cost cost = costOf([&] { scan(reader, events); });
  std::printf("%zu events: %.1f ms, processor %.1f ms\n", events, cost.wall, cost.processor);
  return 0;
}

/// Scans that follow.
int again(const HomeFolder &home) {
  const SystemClock clock;
  UsageReader reader(home, clock);
  std::size_t events = 0;
  scan(reader, events);
  const std::size_t before = events;
  const Cost unchanged = median([] {}, [&] { scan(reader, events); });
  const std::filesystem::path log = largestLog(home.path.toStdString());
  const Cost grown = median([&] { append(log); }, [&] { scan(reader, events); });
  if (events != before + runs * appendedLines) {
    std::fputs("events were lost\n", stderr);
    return 1;
  }
  std::printf("%zu events; unchanged %.2f ms, processor %.2f ms; %d lines longer %.2f ms, "
              "processor %.2f ms\n",
              before, unchanged.wall, unchanged.processor, appendedLines, grown.wall,
              grown.processor);
  return 0;
}

/// The most memory that the process has held, in megabytes.
double peakMemory() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with("VmHWM:")) {
      return std::stod(line.substr(line.find(':') + 1)) / 1024;
    }
  }
  return 0;
}

/// A first look at who is logged in.
int account(const HomeFolder &home) {
  SystemFileLayer files;
  AccountReader accounts(home, files);
  const double before = peakMemory();
  bool isKnown = false;
  const Cost cost = costOf([&] { isKnown = accounts.claude().has_value(); });
  std::printf("%s: %.1f ms, processor %.1f ms, peak memory %.1f MB higher\n",
              isKnown ? "somebody" : "nobody", cost.wall, cost.processor, peakMemory() - before);
  return 0;
}

} // namespace
} // namespace morvo

/// UsageBench first|again|account HOME: see `bench/README.md`. `again` makes the largest log
/// longer.
int main(int argc, char **argv) {
  const std::map<std::string_view, int (*)(const morvo::HomeFolder &)> measures{
      {"first", morvo::first}, {"again", morvo::again}, {"account", morvo::account}};
  const auto measure = argc == 3 ? measures.find(argv[1]) : measures.end();
  if (measure == measures.end()) {
    std::fputs("UsageBench first|again|account HOME\n", stderr);
    return 2;
  }
  return measure->second(morvo::HomeFolder{QFile::decodeName(argv[2])});
}
