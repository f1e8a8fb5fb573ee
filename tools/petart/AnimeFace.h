#pragma once

#include "AnimePose.h"

class QPainter;

/// The girl's face. Everything stands in the space of her head: the origin is the neck, up is
/// negative.
namespace morvo::AnimeFace {

/// Skin, blush, eyes and mouth: what the fringe falls over.
void paint(QPainter &painter, const AnimePose &pose);
/// The brows, which show through the fringe.
void paintBrows(QPainter &painter, const AnimePose &pose);

} // namespace morvo::AnimeFace
