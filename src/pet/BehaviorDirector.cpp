#include "pet/BehaviorDirector.h"

#include "pet/ActionTags.h"
#include "pet/FrameSetName.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace morvo::BehaviorDirector {
namespace {

/// What the user's mode makes of the pet's own pace and choices.
struct ModeFigures {
  double rateFactor = 1;
  double strollChance = 0;
  double playChance = 0;
};

constexpr ModeFigures naturalFigures{.rateFactor = 1, .strollChance = 0.18, .playChance = 0.35};
constexpr ModeFigures playfulFigures{.rateFactor = 1.7, .strollChance = 0.4, .playChance = 0.5};
constexpr ModeFigures restFigures{.rateFactor = 0.45, .strollChance = 0, .playChance = 0.1};

constexpr double slowestRate = 0.2;
constexpr double fastestRate = 5;
/// Of the shortest wait: the pet rests that long after a performance.
constexpr double restShare = 0.6;
/// Of a wait, when the pet may not act now.
constexpr double suppressedShare = 0.5;
/// Seconds between the two ends of a wait, at least.
constexpr double leastSpread = 1;

const ModeFigures &figures(PetBehaviorMode mode) {
  switch (mode) {
  case PetBehaviorMode::playful:
    return playfulFigures;
  case PetBehaviorMode::rest:
    return restFigures;
  case PetBehaviorMode::natural:
    break;
  }
  return naturalFigures;
}

bool isDrowsy(const QString &mood) {
  return mood == u"sleepy" || mood == u"dreamy" || mood == u"hungry";
}

bool isCheerful(const QString &mood) { return mood == u"hype" || mood == u"happy"; }

double rate(const std::optional<PetPack> &pack, PetBehaviorMode mode) {
  const double tempo = pack && pack->motion ? pack->motion->tempo.value_or(1) : 1;
  // A tempo that is no number is none; the clamp takes the infinite ones.
  const double wanted = (std::isnan(tempo) ? 1 : tempo) * figures(mode).rateFactor;
  return std::clamp(wanted, slowestRate, fastestRate);
}

const QString &playedName(const PetPack::Action &action) {
  return action.frameSet.isEmpty() ? action.id : action.frameSet;
}

std::optional<QString> chosenAction(const BehaviorContext &context,
                                    const std::optional<PetPack> &pack,
                                    const QSet<QString> &availableFrameSets, RandomSource &random) {
  auto choices = candidates(pack, availableFrameSets);
  if (context.lastAutonomous) {
    std::erase_if(choices, [&](const PetPack::Action &action) {
      return action.frameSet == *context.lastAutonomous || action.id == *context.lastAutonomous;
    });
  }
  if (choices.empty() || random.uniform() >= figures(context.mode).playChance) {
    return std::nullopt;
  }
  return playedName(choices[random.below(choices.size())]);
}

ProceduralGesture chosenGesture(const BehaviorContext &context, RandomSource &random) {
  const auto pool = gesturePool(context.mood);
  auto fresh = pool;
  std::erase_if(fresh, [&](ProceduralGesture gesture) {
    return context.lastAutonomous == rawValue(gesture);
  });
  const auto &choices = fresh.empty() ? pool : fresh;
  return choices[random.below(choices.size())];
}

BehaviorDecision::Move chosenMove(const BehaviorContext &context,
                                  const std::optional<PetPack> &pack,
                                  const QSet<QString> &availableFrameSets, RandomSource &random) {
  // The draw is made in every mode, so that one seed tells the same story in each.
  if (context.strollAvailable && !isDrowsy(context.mood) &&
      random.uniform() < figures(context.mode).strollChance) {
    return BehaviorDecision::Stroll{};
  }
  if (auto frameSet = chosenAction(context, pack, availableFrameSets, random)) {
    return BehaviorDecision::Play{*std::move(frameSet)};
  }
  return chosenGesture(context, random);
}

} // namespace

BehaviorDecision decide(const BehaviorContext &context, const std::optional<PetPack> &pack,
                        const QSet<QString> &availableFrameSets, RandomSource &random) {
  const double pace = rate(pack, context.mode);
  const std::pair<double, double> range = cadence(context.mood);
  if (context.stickyLoopActive || context.performing || context.quiet ||
      context.secondsSincePerformance < range.first * restShare / pace) {
    return {.move = BehaviorDecision::None{}, .wait = wait(range, suppressedShare / pace, random)};
  }
  auto move = chosenMove(context, pack, availableFrameSets, random);
  return {.move = std::move(move), .wait = wait(range, 1 / pace, random)};
}

std::vector<PetPack::Action> candidates(const std::optional<PetPack> &pack,
                                        const QSet<QString> &availableFrameSets) {
  std::vector<PetPack::Action> found;
  if (!pack) {
    return found;
  }
  for (const QString &id : pack->autonomousActions) {
    const auto action = std::ranges::find(pack->actions, id, &PetPack::Action::id);
    if (action != pack->actions.end() && !isSignalAction(*action) &&
        availableFrameSets.contains(playedName(*action))) {
      found.push_back(*action);
    }
  }
  return found;
}

bool isSignalAction(const PetPack::Action &action) {
  static const QStringList signalNames{FrameSetName::celebrate, FrameSetName::alert};
  if (action.tags.isEmpty()) {
    return signalNames.contains(action.id) || signalNames.contains(action.frameSet);
  }
  return ActionTags::saySignal(action);
}

std::pair<double, double> cadence(const QString &mood) {
  if (mood == u"lonely") {
    return {55, 110};
  }
  if (isCheerful(mood)) {
    return {70, 140};
  }
  return isDrowsy(mood) ? std::pair(150.0, 280.0) : std::pair(100.0, 200.0);
}

double wait(const std::pair<double, double> &range, double factor, RandomSource &random) {
  const double low = factor * range.first;
  const double high = factor * range.second;
  return random.uniform(low, std::max(high, low + leastSpread));
}

std::vector<ProceduralGesture> gesturePool(const QString &mood) {
  using enum ProceduralGesture;
  if (isDrowsy(mood)) {
    return {sway, stretch};
  }
  if (isCheerful(mood)) {
    return {bob, perk, sway};
  }
  return mood == u"lonely" ? std::vector{perk, bob, sway} : std::vector{bob, sway, perk, stretch};
}

std::optional<QString> semanticFrameSet(const QStringList &hints,
                                        const std::optional<PetPack> &pack,
                                        const QSet<QString> &available) {
  if (!pack) {
    return std::nullopt;
  }
  for (const PetPack::Action &action : pack->actions) {
    const QString text =
        (QStringList{action.id, action.frameSet} + action.tags).join(u' ').toLower();
    const bool speaksOfIt =
        std::ranges::any_of(hints, [&](const QString &hint) { return text.contains(hint); });
    if (speaksOfIt && available.contains(playedName(action))) {
      return playedName(action);
    }
  }
  return std::nullopt;
}

} // namespace morvo::BehaviorDirector
