#pragma once

/// The shapes of movement in time. A phase runs from 0 at the start of an action to 1 at its end;
/// every function here is pure, and a loop may give phases outside of 0 to 1.
namespace morvo::Motion {

/// A sine of one period a phase unit, `shift` earlier.
[[nodiscard]] double wave(double phase, double shift = 0);

/// 0 before `from`, 1 after `to`, smooth between.
[[nodiscard]] double ramp(double phase, double from, double to);

/// 0 outside of `from` to `to`, 1 from `up` to `down`, smooth between.
[[nodiscard]] double plateau(double phase, double from, double up, double down, double to);

/// One bump from 0 over 1 back to 0, by half a sine.
[[nodiscard]] double bump(double phase, double from, double to);

/// A flight under gravity: 0 at `from` and `to`, 1 in the middle, fastest at both ends.
[[nodiscard]] double flight(double phase, double from, double to);

/// A swing that starts at `from` with 1 and dies away to nothing at `to`, after `swings` periods.
[[nodiscard]] double settle(double phase, double from, double to, double swings);

/// How far a blink that begins at `at` has closed the lids: they fall in a third of `length` and
/// open in the rest, as lids do.
[[nodiscard]] double blink(double phase, double at, double length);

/// The part of a life that began at `birth`: 0 before, 1 after `length`. For loops, `phase` is
/// taken round the loop.
[[nodiscard]] double age(double phase, double birth, double length);
[[nodiscard]] double ageInLoop(double phase, double birth, double length);

/// Between `from` and `to`.
[[nodiscard]] double mix(double from, double to, double part);

} // namespace morvo::Motion
