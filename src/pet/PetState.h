#pragma once

#include "pet/Needs.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace morvo {

/// How the cloud service believes the pet to be. Never takes the place of the live mood and needs.
struct PetState {
  QString mood;
  Needs needs;

  bool operator==(const PetState &) const = default;
};

/// Nothing unless both fields are there, and whole.
[[nodiscard]] std::optional<PetState> petStateFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const PetState &state);

} // namespace morvo
