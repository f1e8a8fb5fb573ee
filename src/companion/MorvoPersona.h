#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace morvo {

/// Who the pet is: an identity with a character text.
struct MorvoPersona {
  QString id;
  QString name;
  int tier = 1;      ///< 1 for the default persona; custom ones take it from their pack.
  QString character; ///< The persona prompt, several lines.
  std::optional<QString> avatarPath;

  bool operator==(const MorvoPersona &) const = default;
};

/// Nothing when `id`, `name`, `tier` or `character` is missing or of another type.
[[nodiscard]] std::optional<MorvoPersona> morvoPersonaFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const MorvoPersona &persona);

} // namespace morvo
