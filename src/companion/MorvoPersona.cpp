#include "companion/MorvoPersona.h"

namespace morvo {

std::optional<MorvoPersona> morvoPersonaFromJson(const QJsonObject &json) {
  const QJsonValue id = json.value(u"id");
  const QJsonValue name = json.value(u"name");
  const QJsonValue tier = json.value(u"tier");
  const QJsonValue character = json.value(u"character");
  if (!id.isString() || !name.isString() || !tier.isDouble() || !character.isString()) {
    return std::nullopt;
  }
  const QJsonValue avatar = json.value(u"avatarPath");
  return MorvoPersona{.id = id.toString(),
                      .name = name.toString(),
                      .tier = tier.toInt(),
                      .character = character.toString(),
                      .avatarPath =
                          avatar.isString() ? std::optional(avatar.toString()) : std::nullopt};
}

QJsonObject toJson(const MorvoPersona &persona) {
  QJsonObject json{
      {QStringLiteral("id"), persona.id},
      {QStringLiteral("name"), persona.name},
      {QStringLiteral("tier"), persona.tier},
      {QStringLiteral("character"), persona.character},
  };
  if (persona.avatarPath) {
    json.insert(QStringLiteral("avatarPath"), *persona.avatarPath);
  }
  return json;
}

} // namespace morvo
