#pragma once

#include "MorvoPose.h"

class QPainter;

/// The creature's eyes, brows, cheeks and mouth.
namespace morvo::MorvoFace {

/// Paints in the body's space.
void paint(QPainter &painter, const MorvoPose &pose);

} // namespace morvo::MorvoFace
