#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <optional>

/// JSON as QJsonObject, for what the program reads and writes itself.
///
/// Numbers outside the signed 64-bit range become doubles here; files that other tools own are
/// edited with `monitor/AgentSettings.h`, which keeps them.
namespace morvo::Json {

/// The object that `text` holds; nothing when it is not JSON or no object. Never throws, whatever
/// the bytes; nesting beyond 1024 levels counts as no JSON. A little more than JSON
/// is taken: a byte order mark, unknown escapes, control characters in texts, "1." and ".5"; lone
/// surrogate escapes are kept.
[[nodiscard]] std::optional<QJsonObject> parseObject(const QByteArray &text);

/// Pretty-printed with sorted keys, with a line feed at the end.
[[nodiscard]] QByteArray pretty(const QJsonObject &object);

} // namespace morvo::Json
