#include "pet/PetState.h"

namespace morvo {
namespace {

const QString moodKey = QStringLiteral("mood");
const QString needsKey = QStringLiteral("needs");

} // namespace

std::optional<PetState> petStateFromJson(const QJsonObject &json) {
  const QJsonValue mood = json.value(moodKey);
  const auto needs = needsFromJson(json.value(needsKey).toObject());
  if (!mood.isString() || !needs) {
    return std::nullopt;
  }
  return PetState{.mood = mood.toString(), .needs = *needs};
}

QJsonObject toJson(const PetState &state) {
  return {{moodKey, state.mood}, {needsKey, toJson(state.needs)}};
}

} // namespace morvo
