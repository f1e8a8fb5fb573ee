#pragma once

#include "pet/PetPack.h"

/// What the tags of a pack's action say about it; tags not named here say nothing.
namespace morvo::ActionTags {

/// "loop", "idle", "sleep" or "low_energy": the action is one to rest in.
[[nodiscard]] bool sayResting(const PetPack::Action &action);

/// "agent_done", "needs_input", "signature", "celebrate" or "alert": the action answers an event,
/// and the pet does not play it by itself.
[[nodiscard]] bool saySignal(const PetPack::Action &action);

/// A signal's, or "oneshot": the action plays once and never as a loop.
[[nodiscard]] bool sayOnce(const PetPack::Action &action);

} // namespace morvo::ActionTags
