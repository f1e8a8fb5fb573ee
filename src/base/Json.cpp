#include "base/Json.h"

#include <QJsonDocument>

namespace morvo::Json {

std::optional<QJsonObject> parseObject(const QByteArray &text) {
  const auto document = QJsonDocument::fromJson(text);
  return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QByteArray pretty(const QJsonObject &object) {
  return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace morvo::Json
