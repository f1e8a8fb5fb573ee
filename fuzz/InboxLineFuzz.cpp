#include "base/Json.h"
#include "monitor/HookParser.h"
#include "monitor/LineSplitter.h"

#include <QJsonDocument>

#include <cstddef>
#include <cstdint>

namespace {

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

void checkSignal(const QJsonObject &signal, const QJsonObject &line) {
  const auto kind = signal.value(QStringLiteral("kind")).toString();
  if (kind == QStringLiteral("perm")) {
    require(signal == line);
    return;
  }
  require(kind == QStringLiteral("agent"));
  require(signal.value(QStringLiteral("provider")).isString());
  require(signal.value(QStringLiteral("status")).isString());
  const auto label = signal.value(QStringLiteral("label"));
  require(label.isUndefined() || label.isString());
}

void checkLine(const QByteArray &line) {
  require(!line.isEmpty() && !line.contains('\n'));
  const auto object = morvo::Json::parseObject(line);
  if (!object) {
    return;
  }
  const auto found = morvo::HookParser::signals(*object);
  require(found.size() <= 1);
  for (const QJsonObject &signal : found) {
    checkSignal(signal, *object);
    // What is sent on must be writable whatever it holds.
    require(!QJsonDocument(signal).toJson(QJsonDocument::Compact).isEmpty());
  }
}

} // namespace

/// The bytes of an inbox, read in two chunks.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QByteArrayView bytes(data, static_cast<qsizetype>(size));
  const qsizetype cut = bytes.isEmpty() ? 0 : static_cast<unsigned char>(bytes[0]) % bytes.size();
  morvo::LineSplitter lines;
  lines.feed(bytes.first(cut), checkLine);
  lines.feed(bytes.sliced(cut), checkLine);
  if (!lines.rest().isEmpty()) {
    checkLine(lines.rest());
  }
  return 0;
}
