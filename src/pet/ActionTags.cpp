#include "pet/ActionTags.h"

#include <algorithm>

namespace morvo::ActionTags {
namespace {

const QString oneshot = QStringLiteral("oneshot");

bool anyIn(const QStringList &tags, const QStringList &known) {
  return std::ranges::any_of(tags, [&known](const QString &tag) { return known.contains(tag); });
}

} // namespace

bool sayResting(const PetPack::Action &action) {
  static const QStringList known{QStringLiteral("loop"), QStringLiteral("idle"),
                                 QStringLiteral("sleep"), QStringLiteral("low_energy")};
  return anyIn(action.tags, known);
}

bool saySignal(const PetPack::Action &action) {
  static const QStringList known{QStringLiteral("agent_done"), QStringLiteral("needs_input"),
                                 QStringLiteral("signature"), QStringLiteral("celebrate"),
                                 QStringLiteral("alert")};
  return anyIn(action.tags, known);
}

bool sayOnce(const PetPack::Action &action) {
  return action.tags.contains(oneshot) || saySignal(action);
}

} // namespace morvo::ActionTags
