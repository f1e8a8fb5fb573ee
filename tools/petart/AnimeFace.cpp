#include "AnimeFace.h"

#include "AnimeBrush.h"
#include "AnimeColors.h"
#include "Motion.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <cmath>

namespace morvo::AnimeFace {
namespace {

using namespace AnimeColors;

constexpr QPointF eyePlace(39, -64);
constexpr double eyeHalfWidth = 22;
constexpr double eyeTopHeight = 30;
constexpr double eyeBottomHeight = 24;
constexpr double lidRest = 9;
constexpr QPointF mouthPlace(0, -25);
/// How far the features travel when the head turns or nods.
constexpr QPointF travel(17, 11);
/// The far half of a turned face is narrower.
constexpr double foreshortening = 0.16;

QPointF drift(const AnimePose &pose) { return {travel.x() * pose.turn, travel.y() * pose.pitch}; }

QPainterPath faceShape() {
  QPainterPath path;
  path.moveTo(0, -4);
  path.cubicTo(34, -4, 84, -24, 88, -80);
  path.cubicTo(92, -140, 56, -174, 0, -174);
  path.cubicTo(-56, -174, -92, -140, -88, -80);
  path.cubicTo(-84, -24, -34, -4, 0, -4);
  return path;
}

/// Highest point that a curve with these ends and this control height passes.
double control(double apex, double ends) { return (apex - 0.25 * ends) / 0.75; }

struct Lids {
  double top;
  double bottom;
};

Lids lids(const AnimePose::Eyes &eyes) {
  return {Motion::mix(lidRest, -eyeTopHeight * eyes.size, eyes.open),
          Motion::mix(Motion::mix(eyeBottomHeight * eyes.size, 10, eyes.lower), lidRest,
                      1 - std::min(1.0, eyes.open * 3))};
}

// An open eye slants a little; a closing one hangs outwards, or it would look angry.
double innerCorner(const AnimePose::Eyes &eyes) { return Motion::mix(2, 7, eyes.open); }

double outerCorner(const AnimePose::Eyes &eyes) { return Motion::mix(9, 3, eyes.open); }

QPainterPath upperLid(const AnimePose::Eyes &eyes) {
  const double half = eyeHalfWidth * eyes.size;
  const double apex = control(lids(eyes).top, 5);
  QPainterPath path;
  path.moveTo(-half, innerCorner(eyes));
  path.cubicTo(-half * 0.98, apex, half * 0.98, apex + Motion::mix(3, -2, eyes.open), half,
               outerCorner(eyes));
  return path;
}

QPainterPath eyeShape(const AnimePose::Eyes &eyes) {
  const double half = eyeHalfWidth * eyes.size;
  const double deep = control(lids(eyes).bottom, 5);
  QPainterPath path = upperLid(eyes);
  path.cubicTo(half * 0.86, deep, -half * 0.86, deep, -half, innerCorner(eyes));
  return path;
}

/// The light comes from the upper left in either eye.
void paintLights(QPainter &painter, QPointF iris, double size) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.save();
  painter.translate(iris + QPointF(-6.5, -11) * size);
  painter.rotate(-18);
  painter.drawEllipse(QPointF(0, 0), 7 * size, 8.6 * size);
  painter.restore();
  painter.drawEllipse(iris + QPointF(8.5, 7) * size, 3.6 * size, 3.8 * size);
  painter.setBrush(Shade::faded(0xffffffff, 0.8));
  painter.drawEllipse(iris + QPointF(8, -13) * size, 2.2 * size, 2.2 * size);
}

void paintStar(QPainter &painter, QPointF iris, double size) {
  painter.save();
  painter.translate(iris + QPointF(0, -1));
  painter.scale(34 * size, 34 * size);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(gold));
  painter.drawPath(AnimeBrush::star());
  painter.restore();
}

void paintIris(QPainter &painter, const AnimePose::Eyes &eyes, double side) {
  const double size = eyes.size;
  // In the mirrored space of the left eye, right is left.
  const QPointF iris(side * 6 * eyes.gaze.x(), -1 + 5 * eyes.gaze.y());
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::linear(iris - QPointF(0, 26 * size), iris + QPointF(0, 24 * size),
                                 {{0, QColor(eyeTop)},
                                  {0.38, QColor(0xff6e1a4c)},
                                  {0.62, QColor(eyeMiddle)},
                                  {1, QColor(eyeBottom)}}));
  painter.drawEllipse(iris, 17 * size, 25 * size);
  painter.setBrush(Shade::faded(eyeTop, 0.85));
  painter.drawEllipse(iris + QPointF(0, -1), 8 * size, 12 * size);
  painter.setBrush(Shade::faded(0xffffe3a8, 0.75 * (1 - eyes.star)));
  painter.drawEllipse(iris + QPointF(side, 15 * size), 9 * size, 5 * size);
  painter.save();
  painter.translate(iris);
  painter.scale(side, 1);
  if (eyes.star > 0) {
    paintStar(painter, {}, eyes.star);
  }
  paintLights(painter, {}, size);
  painter.restore();
}

void paintOpenEye(QPainter &painter, const AnimePose::Eyes &eyes, double side) {
  const QPainterPath eye = eyeShape(eyes);
  painter.save();
  painter.setClipPath(eye, Qt::IntersectClip);
  painter.fillPath(eye, QColor(0xfffffaf6));
  paintIris(painter, eyes, side);
  // The shadow of the lid.
  AnimeBrush::stroke(painter, upperLid(eyes), Shade::faded(0xff5b2040, 0.35), 14);
  painter.restore();
  AnimeBrush::stroke(painter, upperLid(eyes), QColor(ink), 7.5);
  QPainterPath flick;
  const double half = eyeHalfWidth * eyes.size;
  const double corner = outerCorner(eyes);
  const double lift = 2 - 10 * eyes.open;
  flick.moveTo(half - 3, corner + lift);
  flick.quadTo(half + 5, corner + lift + 2, half + 8, corner + 1.5 * lift);
  AnimeBrush::stroke(painter, flick, QColor(ink), 5);
  QPainterPath lower;
  const double deep = lids(eyes).bottom;
  lower.moveTo(-half * 0.35, deep + 0.5);
  lower.quadTo(half * 0.3, deep + 2.5, half * 0.72, deep - 5);
  AnimeBrush::stroke(painter, lower, Shade::faded(skinLine, 0.9), 3);
}

void paintClosedEye(QPainter &painter, const AnimePose::Eyes &eyes) {
  const double bend = Motion::mix(15, -21, eyes.joy);
  const double ends = Motion::mix(4, 12, eyes.joy);
  QPainterPath lid;
  lid.moveTo(-eyeHalfWidth, ends);
  lid.quadTo(0, ends + bend * 1.3, eyeHalfWidth, ends - 1);
  AnimeBrush::stroke(painter, lid, QColor(ink), 7);
  QPainterPath lash;
  lash.moveTo(eyeHalfWidth - 2, ends - 1);
  lash.lineTo(eyeHalfWidth + 6, ends + Motion::mix(3, 2, eyes.joy));
  AnimeBrush::stroke(painter, lash, QColor(ink), 4.5);
}

void paintWince(QPainter &painter) {
  QPainterPath lid;
  lid.moveTo(18, -12);
  lid.lineTo(-14, 3);
  lid.lineTo(18, 17);
  AnimeBrush::stroke(painter, lid, QColor(ink), 7);
}

void paintEye(QPainter &painter, const AnimePose &pose, double side) {
  constexpr double narrowest = 0.14;
  painter.save();
  painter.translate(QPointF(side * eyePlace.x(), eyePlace.y()) + drift(pose));
  painter.scale(side * (1 + foreshortening * side * -pose.turn), 1);
  if (pose.eyes.wince) {
    paintWince(painter);
  } else if (pose.eyes.open < narrowest) {
    paintClosedEye(painter, pose.eyes);
  } else {
    paintOpenEye(painter, pose.eyes, side);
  }
  painter.restore();
}

void paintBlush(QPainter &painter, const AnimePose &pose, double side) {
  const QPointF cheek = QPointF(side * 62, -36) + drift(pose) * 0.9;
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::faded(blush, 0.75 * pose.blush));
  painter.drawEllipse(cheek, 16, 9.5);
  QPainterPath marks;
  for (const double at : {-5.0, 3.0}) {
    marks.moveTo(cheek + QPointF(at + 2, -3.5));
    marks.lineTo(cheek + QPointF(at - 1, 3.5));
  }
  AnimeBrush::stroke(painter, marks, Shade::faded(0xffe8595f, pose.blush), 2.4);
}

/// The mouth of a cat that has an idea.
QPainterPath closedMouth(const AnimePose::Mouth &mouth) {
  const double half = 15 * mouth.width;
  const double dip = 11 * mouth.smile;
  QPainterPath path;
  path.moveTo(-half, 0);
  if (mouth.smile > 0) {
    path.quadTo(-half * 0.5, dip, 0, 0.5);
    path.quadTo(half * 0.5, dip, half, 0);
  } else {
    path.quadTo(0, dip, half, 0);
  }
  return path;
}

QPainterPath openMouth(const AnimePose::Mouth &mouth) {
  const double half = Motion::mix(19, 9, mouth.round) * mouth.width;
  const double depth = (7 + 25 * mouth.open);
  const double lip = Motion::mix(3 * mouth.smile, -9, mouth.round);
  QPainterPath path;
  path.moveTo(-half, 0);
  path.quadTo(0, lip * 2, half, 0);
  path.cubicTo(half * 1.08, depth * 1.15, -half * 1.08, depth * 1.15, -half, 0);
  return path;
}

void paintOpenMouth(QPainter &painter, const AnimePose::Mouth &mouth) {
  const QPainterPath path = openMouth(mouth);
  painter.fillPath(path, QColor(AnimeColors::mouth));
  QPainterPath tonguePath;
  tonguePath.addEllipse(QPointF(0, 9 + 25 * mouth.open), 13 * mouth.width, 5 + 8 * mouth.open);
  AnimeBrush::inside(painter, path, tonguePath, QColor(tongue));
  if (mouth.round < 0.5 && mouth.smile > 0) {
    QPainterPath fang;
    fang.addPolygon(QPolygonF{{7, -2}, {15, -2}, {11, 9}});
    AnimeBrush::inside(painter, path, fang, QColor(0xffffffff));
  }
  AnimeBrush::stroke(painter, path, QColor(0xff7c2238), 4);
}

void paintMouth(QPainter &painter, const AnimePose &pose) {
  constexpr double parted = 0.1;
  painter.save();
  painter.translate(mouthPlace + drift(pose));
  painter.scale(1 - 0.1 * std::abs(pose.turn), 1);
  if (pose.mouth.open > parted) {
    paintOpenMouth(painter, pose.mouth);
  } else {
    AnimeBrush::stroke(painter, closedMouth(pose.mouth), QColor(0xff7c2238), 4.2);
  }
  painter.restore();
}

} // namespace

void paint(QPainter &painter, const AnimePose &pose) {
  const QPainterPath face = faceShape();
  AnimeBrush::shape(painter, face, QColor(skin), skinLine, 4.5);
  QPainterPath shadow;
  shadow.addRect(-100, -180, 200, 67);
  AnimeBrush::inside(painter, face, shadow.translated(0, 4), QColor(skinShade));
  for (const double side : {-1.0, 1.0}) {
    paintBlush(painter, pose, side);
    paintEye(painter, pose, side);
  }
  paintMouth(painter, pose);
}

void paintBrows(QPainter &painter, const AnimePose &pose) {
  for (const double side : {-1.0, 1.0}) {
    painter.save();
    painter.translate(QPointF(side * 39, -106 - pose.brows) + drift(pose));
    painter.scale(side, 1);
    painter.rotate(-pose.browTilt);
    QPainterPath brow;
    brow.moveTo(-12, 1.5);
    brow.quadTo(2, -5, 14, 1);
    AnimeBrush::stroke(painter, brow, QColor(0xffa32c44), 4.6);
    painter.restore();
  }
}

} // namespace morvo::AnimeFace
