#include "monitor/FleetScanner.h"

#include "monitor/SessionLogs.h"
#include "monitor/SessionTail.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <utility>

namespace morvo::FleetScanner {
namespace {

const QString claudeRoot = QStringLiteral(".claude/projects");
const QString codexRoot = QStringLiteral(".codex/sessions");
const QString unknownProject = QStringLiteral("?");

constexpr qsizetype tailBytes = 65536;
/// A log written less than this many seconds ago belongs to a session at work.
constexpr int runningSeconds = 30;

using Rule = SessionTail::Findings (*)(const QByteArray &tail);

int wholeSeconds(std::chrono::milliseconds age) {
  using Limits = std::numeric_limits<int>;
  const auto count = std::chrono::duration_cast<std::chrono::seconds>(age).count();
  return static_cast<int>(std::clamp<std::int64_t>(count, Limits::min(), Limits::max()));
}

FleetSession session(const QString &agent, const LogFile &file, WallTime now, Rule rule) {
  const auto findings = rule(SessionLogs::tail(file.path, tailBytes));
  const int age = wholeSeconds(now - file.identity.modifiedAt());
  const auto atRest = findings.hasEndedTurn ? FleetStatus::done : FleetStatus::idle;
  return {.id = QFileInfo(QFile::decodeName(file.path.c_str())).fileName(),
          .agent = agent,
          .project = findings.project.isEmpty() ? unknownProject : findings.project,
          .status = age < runningSeconds ? FleetStatus::running : atRest,
          .ageSec = age};
}

bool isSomewhere(const FleetSession &session) {
  return session.project != unknownProject && session.project != u"/";
}

} // namespace

std::vector<FleetSession> scan(const HomeFolder &home, WallTime now, const std::stop_token &stop) {
  std::vector<FleetSession> sessions;
  const auto add = [&](const QString &agent, const QString &root, Rule rule) {
    for (const auto &file : SessionLogs::recentFiles(home.file(root), now, stop)) {
      if (stop.stop_requested()) {
        return;
      }
      sessions.push_back(session(agent, file, now, rule));
    }
  };
  add(QStringLiteral("Claude"), claudeRoot, SessionTail::claude);
  add(QStringLiteral("Codex"), codexRoot, SessionTail::codex);
  std::erase_if(sessions, [](const FleetSession &found) { return !isSomewhere(found); });
  std::ranges::stable_sort(sessions, {}, [](const FleetSession &found) {
    return std::pair(found.status != FleetStatus::running, found.ageSec);
  });
  return sessions;
}

} // namespace morvo::FleetScanner
