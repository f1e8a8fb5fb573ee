#pragma once

#include "base/RandomSource.h"
#include "pet/BehaviorContext.h"
#include "pet/BehaviorDecision.h"
#include "pet/PetPack.h"

#include <QSet>

#include <utility>
#include <vector>

/// Chooses what the pet does when nobody asks it for anything, so that it does not look like a
/// picture that repeats itself. Holds no state; all chance comes in.
namespace morvo::BehaviorDirector {

/// `availableFrameSets` holds the frame sets with at least two frames.
[[nodiscard]] BehaviorDecision decide(const BehaviorContext &context,
                                      const std::optional<PetPack> &pack,
                                      const QSet<QString> &availableFrameSets,
                                      RandomSource &random);

/// The pack's autonomous actions that can be played and are no signals, in the pack's order.
[[nodiscard]] std::vector<PetPack::Action> candidates(const std::optional<PetPack> &pack,
                                                      const QSet<QString> &availableFrameSets);

/// Whether the action tells the user something, so that the pet must not play it by itself.
[[nodiscard]] bool isSignalAction(const PetPack::Action &action);

/// The least and the most seconds between two decisions at the pack's own pace.
[[nodiscard]] std::pair<double, double> cadence(const QString &mood);

/// Seconds to the next decision: somewhere in `factor` times the range, whose ends are then taken a
/// second apart at least.
[[nodiscard]] double wait(const std::pair<double, double> &range, double factor,
                          RandomSource &random);

/// Gestures that suit the mood; never empty.
[[nodiscard]] std::vector<ProceduralGesture> gesturePool(const QString &mood);

/// The first available frame set whose action speaks of one of the hints in its id, frame set or
/// tags; nothing when there is none.
[[nodiscard]] std::optional<QString> semanticFrameSet(const QStringList &hints,
                                                      const std::optional<PetPack> &pack,
                                                      const QSet<QString> &available);

} // namespace morvo::BehaviorDirector
