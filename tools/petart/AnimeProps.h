#pragma once

#include "AnimePose.h"

class QPainter;

/// What the girl holds, and what flies about her.
namespace morvo::AnimeProps {

// These are drawn in the space of the whole figure.
void paintLaptop(QPainter &painter, const AnimePose &pose);
void paintCushion(QPainter &painter);

/// The heart that her hands form, in the space of the torso.
void paintHeart(QPainter &painter, double size);
/// The startled mark, in the space of the head.
void paintAlarm(QPainter &painter, double size);

/// On the canvas.
void paintFloater(QPainter &painter, const AnimePose::Floater &floater);

} // namespace morvo::AnimeProps
