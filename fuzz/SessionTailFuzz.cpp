#include "base/Json.h"
#include "monitor/SessionTail.h"

#include <cstddef>
#include <cstdint>

namespace {

using morvo::SessionTail::Findings;

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

QString lastComponent(QString path) {
  while (path.size() > 1 && path.endsWith(u'/')) {
    path.chop(1);
  }
  return path == u"/" ? path : path.section(u'/', -1);
}

/// Both rules once more, the plain way: every line from the first to the last.
void check(const QByteArray &tail) {
  Findings claude;
  Findings codex;
  bool hasMeta = false;
  for (const QByteArray &text : tail.split('\n')) {
    const auto line = morvo::Json::parseObject(text);
    if (!line) {
      continue;
    }
    if (const QJsonValue cwd = line->value(u"cwd"); cwd.isString()) {
      claude.project = lastComponent(cwd.toString());
    }
    if (line->value(u"type").toString() == u"assistant") {
      claude.hasEndedTurn =
          line->value(u"message").toObject().value(u"stop_reason").toString() == u"end_turn";
    }
    if (!hasMeta && line->value(u"type").toString() == u"session_meta") {
      hasMeta = true;
      codex.project = lastComponent(line->value(u"payload").toObject().value(u"cwd").toString());
    }
  }
  require(morvo::SessionTail::claude(tail) == claude);
  require(morvo::SessionTail::codex(tail) == codex);
}

} // namespace

/// The end of a session's log.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  check(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
  return 0;
}
