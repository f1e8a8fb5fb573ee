#pragma once

#include "pet/PetPack.h"

#include <QSet>

#include <vector>

/// Rules about which frame set serves as what, and about figures shown for the pet's state.
namespace morvo::PetVitals {

/// Whether a frame set of this name may only play once and never rest in a loop.
[[nodiscard]] bool isOneshotOnlyFrameSet(const QString &name);
/// The same, as the tags of the pack's action say; by the name alone without such an action.
[[nodiscard]] bool isOneshotOnlyFrameSet(const QString &name, const std::optional<PetPack> &pack);

/// Whether the action is a loop, or tagged as one to rest in.
[[nodiscard]] bool restsByNature(const PetPack::Action &action);

/// Frame sets that suit this mood as a resting loop, the best first; never empty.
[[nodiscard]] QStringList preferredLoopCandidates(const QString &mood);

/// The frame set to rest in. `available` holds those with at least one frame; "idle" comes out even
/// when it has none.
[[nodiscard]] QString resolveLoopAction(const QString &mood, const QString &packPreferred,
                                        bool packHasExplicitLoop, const QSet<QString> &available);

/// The largest of the percentages, each taken from 0 to 100; 0 for none.
[[nodiscard]] int aggregateUsedPct(const std::vector<int> &percentages);

} // namespace morvo::PetVitals
