#include "monitor/FleetScanner.h"

#include "base/Json.h"
#include "monitor/SessionLogs.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace morvo::FleetScanner {
namespace {

const QString claudeRoot = QStringLiteral(".claude/projects");
const QString codexRoot = QStringLiteral(".codex/sessions");
const QString unknownProject = QStringLiteral("?");
const QString endOfTurn = QStringLiteral("end_turn");
const QByteArray sessionMeta = QByteArrayLiteral("session_meta");

constexpr qsizetype tailBytes = 65536;
/// A log written less than this many seconds ago belongs to a session at work.
constexpr int runningSeconds = 30;

/// What a log's lines tell of its session.
struct Findings {
  QString workingDirectory;
  bool hasEndedTurn = false;
};

using Rule = Findings (*)(const QByteArray &tail);

/// A line without copying it; valid as long as the text.
QByteArray lineBetween(const QByteArray &text, qsizetype begin, qsizetype end) {
  return QByteArray::fromRawData(text.constData() + begin, end - begin);
}

/// Goes from the last line back, so that a long log costs no more than its last turn.
Findings claudeFindings(const QByteArray &tail) {
  std::optional<QString> workingDirectory;
  std::optional<bool> hasEndedTurn;
  for (qsizetype end = tail.size(); end > 0 && !(workingDirectory && hasEndedTurn);) {
    const qsizetype begin = tail.lastIndexOf('\n', end - 1) + 1;
    const auto line = Json::parseObject(lineBetween(tail, begin, end));
    end = begin - 1;
    if (!line) {
      continue;
    }
    if (const QJsonValue stated = line->value(u"cwd"); !workingDirectory && stated.isString()) {
      workingDirectory = stated.toString();
    }
    if (!hasEndedTurn && line->value(u"type").toString() == u"assistant") {
      hasEndedTurn =
          line->value(u"message").toObject().value(u"stop_reason").toString() == endOfTurn;
    }
  }
  return {.workingDirectory = workingDirectory.value_or(QString()),
          .hasEndedTurn = hasEndedTurn.value_or(false)};
}

bool isSessionMeta(const QJsonObject &line) {
  return line.value(u"type").toString() == QLatin1StringView(sessionMeta);
}

/// The first line of a log tells where its session works; in the tail of a long one it is missing.
Findings codexFindings(const QByteArray &tail) {
  for (qsizetype begin = 0; begin < tail.size();) {
    const qsizetype feed = tail.indexOf('\n', begin);
    const qsizetype end = feed < 0 ? tail.size() : feed;
    const QByteArray text = lineBetween(tail, begin, end);
    begin = end + 1;
    // The word can also be written with escapes; other lines are not worth the parsing.
    if (!text.contains(sessionMeta) && !text.contains("\\u")) {
      continue;
    }
    const auto line = Json::parseObject(text);
    if (line && isSessionMeta(*line)) {
      return {.workingDirectory = line->value(u"payload").toObject().value(u"cwd").toString()};
    }
  }
  return {};
}

/// "/" for the root itself, as a path's last component has it.
QString lastComponent(QStringView path) {
  while (path.size() > 1 && path.endsWith(u'/')) {
    path.chop(1);
  }
  return path.size() > 1 ? path.sliced(path.lastIndexOf(u'/') + 1).toString() : path.toString();
}

int wholeSeconds(std::chrono::milliseconds age) {
  using Limits = std::numeric_limits<int>;
  const auto count = std::chrono::duration_cast<std::chrono::seconds>(age).count();
  return static_cast<int>(std::clamp<std::int64_t>(count, Limits::min(), Limits::max()));
}

FleetSession session(const QString &agent, const SessionLogs::LogFile &file, WallTime now,
                     Rule rule) {
  const Findings findings = rule(SessionLogs::tail(file.path, tailBytes));
  const QString project = lastComponent(findings.workingDirectory);
  const int age = wholeSeconds(now - file.modifiedAt);
  const auto atRest = findings.hasEndedTurn ? FleetStatus::done : FleetStatus::idle;
  return {.id = QFileInfo(QFile::decodeName(file.path)).fileName(),
          .agent = agent,
          .project = project.isEmpty() ? unknownProject : project,
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
  add(QStringLiteral("Claude"), claudeRoot, claudeFindings);
  add(QStringLiteral("Codex"), codexRoot, codexFindings);
  std::erase_if(sessions, [](const FleetSession &found) { return !isSomewhere(found); });
  std::ranges::stable_sort(sessions, {}, [](const FleetSession &found) {
    return std::pair(found.status != FleetStatus::running, found.ageSec);
  });
  return sessions;
}

} // namespace morvo::FleetScanner
