#pragma once

#include "MorvoPose.h"

/// What the creature does in each of its sets, as poses over a phase from 0 to 1. `rest` is the
/// pose on which all but the loops begin and end. What hangs on the body is moved here only as far
/// as it acts by itself; `MorvoOverlap` lets it follow the body.
namespace morvo::MorvoActions {

// Loops of rest.
[[nodiscard]] MorvoPose idle(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose sleep(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose watching(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose code(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose droop(double phase, const MorvoPose &rest);

// Performances.
[[nodiscard]] MorvoPose celebrate(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose alert(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose greet(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose petted(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose curious(double phase, const MorvoPose &rest);

// Loops of being on the way.
[[nodiscard]] MorvoPose walk(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose carried(double phase, const MorvoPose &rest);
[[nodiscard]] MorvoPose tossed(double phase, const MorvoPose &rest);

} // namespace morvo::MorvoActions
