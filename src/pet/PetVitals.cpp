#include "pet/PetVitals.h"

#include "pet/ActionTags.h"
#include "pet/FrameSetName.h"

#include <algorithm>

namespace morvo::PetVitals {
namespace {

using FrameSetName::idle;

/// Moods in which resting in "idle" would look wrong even when the pack says so.
bool refusesIdle(const QString &mood) {
  static const QStringList moods{QStringLiteral("hungry"), QStringLiteral("sleepy"),
                                 QStringLiteral("dreamy"), QStringLiteral("lonely")};
  return moods.contains(mood);
}

} // namespace

bool isOneshotOnlyFrameSet(const QString &name) {
  static const QStringList names{FrameSetName::greet, FrameSetName::celebrate, FrameSetName::petted,
                                 QStringLiteral("slap"), QStringLiteral("roll")};
  return names.contains(name);
}

bool isOneshotOnlyFrameSet(const QString &name, const std::optional<PetPack> &pack) {
  if (!pack) {
    return isOneshotOnlyFrameSet(name);
  }
  const auto action = std::ranges::find_if(pack->actions, [&](const PetPack::Action &candidate) {
    return candidate.frameSet == name || candidate.id == name;
  });
  if (action == pack->actions.end()) {
    return isOneshotOnlyFrameSet(name);
  }
  if (ActionTags::sayOnce(*action)) {
    return true;
  }
  return !restsByNature(*action) && isOneshotOnlyFrameSet(name);
}

bool restsByNature(const PetPack::Action &action) {
  return action.loop || ActionTags::sayResting(action);
}

QStringList preferredLoopCandidates(const QString &mood) {
  using FrameSetName::sleep;
  using FrameSetName::watching;
  static const QStringList drowsy{QStringLiteral("sleepy"), QStringLiteral("dreamy")};
  static const QStringList awake{QStringLiteral("lonely"), QStringLiteral("happy"),
                                 QStringLiteral("hype"), QStringLiteral("calm"),
                                 QStringLiteral("focused")};
  if (mood == u"hungry") {
    return {sleep, watching, idle};
  }
  if (drowsy.contains(mood)) {
    return {sleep, idle};
  }
  return awake.contains(mood) ? QStringList{idle, watching, sleep} : QStringList{idle};
}

QString resolveLoopAction(const QString &mood, const QString &packPreferred,
                          bool packHasExplicitLoop, const QSet<QString> &available) {
  const bool refused =
      (refusesIdle(mood) && packPreferred == idle) || isOneshotOnlyFrameSet(packPreferred);
  if (packHasExplicitLoop && !packPreferred.isEmpty() && !refused &&
      (available.isEmpty() || available.contains(packPreferred))) {
    return packPreferred;
  }
  const QStringList candidates = preferredLoopCandidates(mood);
  if (available.isEmpty()) {
    return candidates.first();
  }
  for (const QString &candidate : candidates) {
    if (available.contains(candidate) && !isOneshotOnlyFrameSet(candidate)) {
      return candidate;
    }
  }
  if (available.contains(idle)) {
    return idle;
  }
  QStringList sorted = available.values();
  sorted.sort();
  const auto restful = std::ranges::find_if_not(
      sorted, [](const QString &name) { return isOneshotOnlyFrameSet(name); });
  return restful != sorted.end() ? *restful : idle;
}

int aggregateUsedPct(const std::vector<int> &percentages) {
  int largest = 0;
  for (const int percentage : percentages) {
    largest = std::max(largest, std::clamp(percentage, 0, 100));
  }
  return largest;
}

} // namespace morvo::PetVitals
