#include "app/UsageModes.h"

#include "app/LocalUsage.h"
#include "base/Diagnostics.h"
#include "base/QtScheduler.h"
#include "base/WorkerPool.h"
#include "usage/CodexUsageReader.h"
#include "usage/UsageAnalytics.h"

#include <QCoroTask>
#include <QTextStream>

#include <array>
#include <charconv>

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
  QtScheduler scheduler;
  WorkerPool pool(LocalUsage::threads);
  const auto source = LocalUsage::source(context, clock, scheduler, pool);
  const UsageSnapshot snapshot = QCoro::waitFor(source->capture()).value_or(UsageSnapshot());
  UsageCalibrator calibrator(setting.store(), clock);
  const auto stats =
      UsageAnalytics::compute(snapshot.events, snapshot.weekTokens, clock.now(), calibrator);
  QTextStream out(stderr);
  for (const QString &line : scanLines(snapshot, stats)) {
    out << line << '\n';
  }
}

void printCodexLimit(const HomeFolder &home) {
  Diagnostics::line(u"CODEX", codexLine(CodexUsageReader(home).latest()));
}

} // namespace morvo::UsageModes
