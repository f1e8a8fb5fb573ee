#pragma once

#include "MorvoPose.h"

/// Small things that several of the creature's actions do.
namespace morvo::MorvoGestures {

/// The body keeps its volume: what it loses in height it gains in width.
void squash(MorvoPose &pose, double height);
/// 0 breathed out at phases 0 and 1, 1 breathed in half way.
[[nodiscard]] double breath(double phase);
/// Closes the eyes by this part.
void shut(MorvoPose &pose, double part);
/// Adds a bubble of age 0 to 1 that rises from `from` to `to` and swings; nothing at either end.
void addBubble(MorvoPose &pose, double age, QPointF from, QPointF to, double size);
/// The water column, no higher than the canvas lets it be.
void setSpout(MorvoPose &pose, double height);
/// Drops that the column throws to both sides between two phases.
void addDrops(MorvoPose &pose, double phase, double from, double to);

} // namespace morvo::MorvoGestures
