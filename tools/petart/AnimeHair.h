#pragma once

#include "AnimePose.h"

class QPainter;

/// The girl's hair, and the headphones on it. Everything stands in the space of her head: the
/// origin is the neck, up is negative.
namespace morvo::AnimeHair {

/// Behind everything: the ponytail and the bob.
void paintBehind(QPainter &painter, const AnimePose &pose);
/// Over the face: fringe, side locks, crest, headphones with their ears.
void paintBefore(QPainter &painter, const AnimePose &pose);

} // namespace morvo::AnimeHair
