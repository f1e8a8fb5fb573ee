#include "app/UsageModes.h"

#include "app/LocalUsage.h"
#include "base/Diagnostics.h"
#include "base/QtScheduler.h"
#include "base/WorkerPool.h"
#include "platform/linux/TerminationSignals.h"
#include "usage/CodexUsageReader.h"
#include "usage/UsageAnalytics.h"

#include <QCoroTask>
#include <QTextStream>

#include <array>
#include <charconv>
#include <csignal>
#include <expected>

namespace morvo::UsageModes {
namespace {

/// As `printf` writes it, whatever the user's language.
QString fixed(double number, int decimals) {
  // The longest number has 309 digits before its point.
  std::array<char, 320> text{};
  const auto end =
      std::to_chars(text.begin(), text.end(), number, std::chars_format::fixed, decimals).ptr;
  return QString::fromLatin1(text.data(), end - text.data());
}

QString agentLine(const DetectedAgent &agent) {
  return QStringLiteral("SCAN  %1  %2tok  7d=%3  $%4")
      .arg(agent.name)
      .arg(agent.windowTokens)
      .arg(agent.weekTokens)
      .arg(fixed(agent.cost, 2));
}

/// What one capture gave; or the number of the signal that asked the process to end before.
std::expected<std::optional<UsageSnapshot>, int> capture(const HookContext &context,
                                                         const Clock &clock) {
  QtScheduler scheduler;
  std::optional<WorkerPool> pool(std::in_place, LocalUsage::threads);
  auto source = LocalUsage::source(context, clock, scheduler, *pool);
  std::optional<int> signal;
  const TerminationSignals termination([&](int number) {
    signal = number;
    // Without them the capture goes on at once, with nothing.
    source.reset();
    pool.reset();
  });
  auto snapshot = QCoro::waitFor(source->capture());
  if (signal) {
    return std::unexpected(*signal);
  }
  return snapshot;
}

QString totalLine(const UsageStats &stats) {
  return QStringLiteral("STATS window=%1 used=%2%(ceiling%3) level=%4 %5tok/min $%6")
      .arg(stats.windowTokens)
      .arg(stats.usedPct)
      .arg(stats.ceiling)
      .arg(rawValue(stats.level), fixed(stats.burnPerMin, 0), fixed(stats.costUSD, 2));
}

} // namespace

QStringList scanLines(const UsageSnapshot &snapshot, const UsageStats &stats) {
  QStringList lines;
  for (const DetectedAgent &agent : snapshot.agents) {
    lines.append(agentLine(agent));
  }
  lines.append(totalLine(stats));
  return lines;
}

QString codexLine(const std::optional<LiveRateLimit> &limit) {
  return limit ? QStringLiteral("5h=") + QString::number(limit->primaryPct) +
                     QStringLiteral("% plan=") + limit->plan
               : QStringLiteral("没读到 rate_limits");
}

void scan(const HookContext &context, const Setting &setting) {
  const SystemClock clock;
  const auto captured = capture(context, clock);
  if (!captured) {
    // Whoever started the process is told by its end, as by any other command's.
    std::raise(captured.error());
    return;
  }
  const std::optional<UsageSnapshot> &snapshot = *captured;
  if (!snapshot) {
    // To tell of no use at all would be wrong, and would be learned.
    Diagnostics::line(u"SCAN", QStringLiteral("没读到本机用量"));
    return;
  }
  UsageCalibrator calibrator(setting.store(), clock);
  const auto stats =
      UsageAnalytics::compute(snapshot->events, snapshot->weekTokens, clock.now(), calibrator);
  QTextStream out(stderr);
  for (const QString &line : scanLines(*snapshot, stats)) {
    out << line << '\n';
  }
}

void printCodexLimit(const HomeFolder &home) {
  Diagnostics::line(u"CODEX", codexLine(CodexUsageReader(home).latest()));
}

} // namespace morvo::UsageModes
