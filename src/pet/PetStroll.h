#pragma once

#include "base/RandomSource.h"
#include "base/Time.h"

#include <QRect>

#include <optional>

/// How the pet walks along the desktop. Device-independent pixels.
namespace morvo::PetStroll {

/// Between two steps.
inline constexpr Duration stepTime = seconds(1.0 / 60);
/// Of a walk of the pet's own, and of one to the pointer; pixels a second.
inline constexpr double speed = 90;
inline constexpr double speedToPointer = 160;

/// How far to go, to the right or, below zero, to the left: towards the greater room, or by chance
/// where there is enough on both sides. Nothing where the room is too small.
[[nodiscard]] std::optional<double> distance(const QRect &panel, const QRect &workArea,
                                             RandomSource &random);
/// Whether a walk of this length is worth a step.
[[nodiscard]] bool isWalk(double distance);
/// How long the walk takes; neither hurried nor endless, whatever the speed.
[[nodiscard]] Duration duration(double distance, double speed);
/// The part of the way that is behind the pet after the part `t` of the time.
[[nodiscard]] double ease(double t);

} // namespace morvo::PetStroll
