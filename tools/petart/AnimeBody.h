#pragma once

#include "AnimePose.h"

#include <QTransform>

class QPainter;

/// The girl below her head: hoodie, arms, legs.
namespace morvo::AnimeBody {

/// From the space of the torso, whose origin is the hips, to that of the whole figure, whose origin
/// is the middle of the base line.
[[nodiscard]] QTransform torso(const AnimePose &pose);

// These are drawn in the space of the whole figure.
void paintLegs(QPainter &painter, const AnimePose &pose);
/// While she sits, her thighs lie under what she holds and her soles before it.
void paintLap(QPainter &painter, const AnimePose &pose);
void paintSoles(QPainter &painter, const AnimePose &pose);

// These are drawn in the space of the torso.
void paintHood(QPainter &painter, const AnimePose &pose);
void paintTorso(QPainter &painter, const AnimePose &pose);
void paintArms(QPainter &painter, const AnimePose &pose, AnimePose::Layer layer);

/// Where the neck stands in the space of the torso.
inline constexpr QPointF neck(0, -106);

} // namespace morvo::AnimeBody
