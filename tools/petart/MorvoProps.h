#pragma once

#include "MorvoBones.h"

class QPainter;

/// What is around the creature: water, bubbles, hearts, notes, and the clam it works at.
namespace morvo::MorvoProps {

/// The water column from the head and its drops, behind the body.
void paintWater(QPainter &painter, const MorvoPose &pose, const MorvoBones &bones);
/// The opened clam in front of the body, its back to the viewer, its light on the belly.
void paintShell(QPainter &painter, const MorvoPose &pose, const MorvoBones &bones);
/// Everything else, in front.
void paintAround(QPainter &painter, const MorvoPose &pose);

} // namespace morvo::MorvoProps
