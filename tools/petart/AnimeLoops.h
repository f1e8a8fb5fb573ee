#pragma once

#include "AnimePose.h"

/// What the girl does over and over. Each gives the pose at a phase from 0 to 1 of the loop,
/// without what her hair makes of it.
namespace morvo::AnimeLoops {

[[nodiscard]] AnimePose idle(double phase);
[[nodiscard]] AnimePose sleep(double phase);
[[nodiscard]] AnimePose watching(double phase);
[[nodiscard]] AnimePose code(double phase);
/// To the right.
[[nodiscard]] AnimePose walk(double phase);
[[nodiscard]] AnimePose carried(double phase);
[[nodiscard]] AnimePose tossed(double phase);

} // namespace morvo::AnimeLoops
