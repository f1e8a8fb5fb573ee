#include "monitor/SessionTail.h"

#include "base/Json.h"

#include <optional>

namespace morvo::SessionTail {
namespace {

const QString endOfTurn = QStringLiteral("end_turn");
const QByteArray sessionMeta = QByteArrayLiteral("session_meta");

/// A line without copying it; valid as long as the text.
QByteArray lineBetween(const QByteArray &text, qsizetype begin, qsizetype end) {
  return QByteArray::fromRawData(text.constData() + begin, end - begin);
}

bool isSessionMeta(const QJsonObject &line) {
  return line.value(u"type").toString() == QLatin1StringView(sessionMeta);
}

/// "/" for the root itself, as a path's last component has it.
QString lastComponent(QStringView path) {
  while (path.size() > 1 && path.endsWith(u'/')) {
    path.chop(1);
  }
  return path.size() > 1 ? path.sliced(path.lastIndexOf(u'/') + 1).toString() : path.toString();
}

} // namespace

Findings claude(const QByteArray &tail) {
  // From the last line back, so that a long log costs no more than its last turn.
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
  return {.project = lastComponent(workingDirectory.value_or(QString())),
          .hasEndedTurn = hasEndedTurn.value_or(false)};
}

Findings codex(const QByteArray &tail) {
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
      const QJsonObject payload = line->value(u"payload").toObject();
      return {.project = lastComponent(payload.value(u"cwd").toString())};
    }
  }
  return {};
}

} // namespace morvo::SessionTail
