#pragma once

#include "AnimePose.h"

/// What the girl does once. Each changes the rest pose into the pose at a phase from 0 to 1, at
/// both of which it leaves it as it is.
namespace morvo::AnimeActs {

void celebrate(AnimePose &pose, double phase);
void alert(AnimePose &pose, double phase);
void greet(AnimePose &pose, double phase);
void petted(AnimePose &pose, double phase);
/// A heart between her hands, for whoever looks.
void heart(AnimePose &pose, double phase);
/// The pose of one who has secret powers: a hand before the face, the other to the side.
void vow(AnimePose &pose, double phase);

} // namespace morvo::AnimeActs
