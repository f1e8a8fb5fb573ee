#include "AnimeHair.h"

#include "AnimeBrush.h"
#include "AnimeColors.h"
#include "AnimeFace.h"
#include "Motion.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace morvo::AnimeHair {
namespace {

using namespace AnimeColors;

constexpr QPointF tailRoot(84, -156);
constexpr double tailLength = 222;
constexpr int tailPieces = 16;
constexpr double tailStart = 30;
constexpr double tailBend = 146;
constexpr double tailFlick = 46;
/// How far layers before and behind the face travel when the head turns.
constexpr double frontTravel = 9;
constexpr double backTravel = -7;

double tailHalfWidth(double part) {
  const double swell = std::sin(std::numbers::pi * std::pow(part, 0.62));
  return 10 * (1 - part) + 36 * swell;
}

/// Out and up from the tie, soon over and then straight down, with a flick at the end.
QPolygonF tailSpine(const AnimePose &pose) {
  const AnimePose::Follow &follow = pose.follow;
  QPolygonF points{{0, 0}};
  for (int piece = 0; piece < tailPieces; ++piece) {
    const double part = (piece + 0.5) / tailPieces;
    const double angle = tailStart + tailBend * (1 - std::pow(1 - part, 2.4)) -
                         tailFlick * std::pow(part, 4) + follow.tail * std::sqrt(part) +
                         follow.tip * part * part - follow.lift * (0.4 + 0.9 * part);
    const double way = tailLength / tailPieces;
    const double turn = angle * std::numbers::pi / 180;
    points.append(points.back() + QPointF(way * std::sin(turn), -way * std::cos(turn)));
  }
  return points;
}

/// A strand within the tail: `offset` is its part of the way from the middle line to the edge.
QPainterPath strand(const QPolygonF &spine, double offset, double from, double to) {
  QPolygonF points;
  const qsizetype last = spine.size() - 1;
  for (qsizetype at = 1; at < last; ++at) {
    const double part = static_cast<double>(at) / static_cast<double>(last);
    if (part >= from && part <= to) {
      const QPointF way = spine[at + 1] - spine[at - 1];
      const double length = std::hypot(way.x(), way.y());
      points.append(spine[at] + QPointF(-way.y(), way.x()) / length * offset * tailHalfWidth(part));
    }
  }
  return Shapes::openThrough(points);
}

void paintTail(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(tailRoot + QPointF(backTravel * pose.turn, 0));
  const QPolygonF spine = tailSpine(pose);
  const QPainterPath tail = Shapes::limb(spine, tailHalfWidth);
  AnimeBrush::lit(painter, tail,
                  Shade::linear(spine.first(), spine.last(),
                                {{0, QColor(hair)}, {0.5, QColor(hair)}, {1, QColor(hairTip)}}),
                  hairLight, hairLine);
  AnimeBrush::stroke(painter, strand(spine, 0.52, 0.1, 0.8), QColor(hairShade), 9);
  AnimeBrush::stroke(painter, strand(spine, 0.06, 0.25, 0.92), Shade::faded(hairShade, 0.8), 4);
  AnimeBrush::stroke(painter, strand(spine, -0.5, 0.2, 0.55), QColor(hairLight), 9);
  painter.restore();
}

void paintTie(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(tailRoot + QPointF(backTravel * pose.turn + 6, -12));
  painter.rotate(20 + 0.5 * pose.follow.tail);
  painter.scale(50, 50);
  AnimeBrush::shape(painter, AnimeBrush::star(), QColor(gold), goldLine, 0.09);
  painter.restore();
}

QPainterPath bob(const AnimePose &pose) {
  const double sway = 0.9 * pose.follow.locks;
  const double up = -0.6 * pose.follow.lift;
  QPainterPath path;
  path.moveTo(-98, -130);
  path.cubicTo(-104, -206, 104, -206, 98, -130);
  path.quadTo(122, -70, 112 + sway * 0.7, -26 + up * 0.5);
  path.quadTo(116 + sway, 0 + up, 130 + sway * 1.3, 8 + up * 1.3);
  path.quadTo(106 + sway, 20 + up, 88 + sway, 8 + up);
  path.quadTo(84 + sway, 22 + up, 72 + sway * 1.2, 32 + up * 1.2);
  path.quadTo(48 + sway, 26 + up, 36 + sway, 6);
  path.lineTo(-36 + sway, 6);
  path.quadTo(-48 + sway, 26 + up, -72 + sway * 1.2, 32 + up * 1.2);
  path.quadTo(-84 + sway, 22 + up, -88 + sway, 8 + up);
  path.quadTo(-106 + sway, 20 + up, -130 + sway * 1.3, 8 + up * 1.3);
  path.quadTo(-116 + sway, 0 + up, -112 + sway * 0.7, -26 + up * 0.5);
  path.quadTo(-122, -70, -98, -130);
  return path.translated(backTravel * pose.turn, 0);
}

QPainterPath fringe() {
  QPainterPath path;
  path.moveTo(-97, -66);
  path.cubicTo(-114, -150, -84, -201, 0, -201);
  path.cubicTo(84, -201, 114, -150, 97, -66);
  path.quadTo(84, -96, 78, -130);
  path.quadTo(68, -114, 52, -107);
  path.quadTo(46, -122, 37, -138);
  path.quadTo(28, -108, 3, -90);
  path.quadTo(1, -116, -11, -138);
  path.quadTo(-28, -117, -53, -106);
  path.quadTo(-62, -120, -72, -134);
  path.quadTo(-82, -98, -97, -66);
  return path;
}

void paintFringe(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(frontTravel * pose.turn, 2 * pose.pitch);
  const QPainterPath front = fringe();
  AnimeBrush::lit(painter, front, QColor(hair), hairLight, hairLine);
  // A band of light round the crown, and shade where the locks part.
  QPainterPath band;
  band.moveTo(-86, -140);
  band.cubicTo(-56, -176, 50, -178, 82, -144);
  band.quadTo(70, -146, 58, -150);
  band.quadTo(52, -140, 44, -152);
  band.quadTo(20, -158, 6, -158);
  band.quadTo(-4, -144, -14, -157);
  band.quadTo(-36, -154, -48, -149);
  band.quadTo(-56, -138, -62, -147);
  band.quadTo(-76, -142, -86, -140);
  AnimeBrush::inside(painter, front, band, QColor(hairLight));
  QPainterPath parting;
  parting.moveTo(37, -138);
  parting.quadTo(31, -152, 33, -164);
  parting.moveTo(-11, -138);
  parting.quadTo(-13, -152, -7, -166);
  AnimeBrush::stroke(painter, parting, QColor(hairShade), 4);
  painter.restore();
}

void paintLock(QPainter &painter, const AnimePose &pose, double side) {
  const double swing = side * pose.follow.locks * 0.9;
  const double up = -0.7 * pose.follow.lift;
  painter.save();
  painter.translate(frontTravel * 0.5 * pose.turn, 0);
  painter.scale(side, 1);
  QPainterPath lock;
  lock.moveTo(74, -118);
  lock.cubicTo(80, -84, 74, -46, 76 + swing * 0.8, -22 + up);
  lock.quadTo(78 + swing, 0 + up, 92 + swing * 1.3, 12 + up * 1.3);
  lock.cubicTo(110 + swing * 0.8, -30 + up * 0.6, 108, -86, 98, -122);
  AnimeBrush::lit(painter, lock, QColor(hair), hairLight, hairLine, side);
  QPainterPath shade;
  shade.moveTo(96, -100);
  shade.cubicTo(104, -60, 102 + swing * 0.6, -30 + up, 92 + swing * 1.3, 10 + up * 1.3);
  shade.cubicTo(110 + swing * 0.8, -30 + up * 0.6, 112, -86, 96, -100);
  AnimeBrush::inside(painter, lock, shade, QColor(hairShade));
  painter.restore();
}

void paintCrest(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(4 + frontTravel * pose.turn, -192);
  painter.rotate(-26 + pose.follow.crest);
  const QPolygonF spine = Shapes::spine(54, 96 + 0.6 * pose.follow.crest, 30);
  const QPainterPath crest =
      Shapes::limb(spine, [](double part) { return 8.5 * std::pow(1 - part, 0.7) + 0.3; });
  AnimeBrush::shape(painter, crest, QColor(hair), hairLine, 4.4);
  painter.restore();
}

void paintEar(QPainter &painter, const AnimePose &pose, double side) {
  painter.save();
  painter.translate(5 * pose.turn, 0);
  painter.scale(side, 1);
  painter.translate(62, -186);
  painter.rotate(26 + pose.follow.ears);
  QPainterPath ear;
  ear.moveTo(-27, 8);
  ear.quadTo(-20, -30, -3, -46);
  ear.quadTo(0, -50, 4, -46);
  ear.quadTo(22, -30, 28, 8);
  ear.closeSubpath();
  AnimeBrush::shape(painter, ear, QColor(dark), ink);
  QPainterPath inner;
  inner.moveTo(-14, 6);
  inner.quadTo(-10, -20, 0, -32);
  inner.quadTo(12, -18, 16, 6);
  inner.closeSubpath();
  painter.fillPath(inner, QColor(pink));
  painter.restore();
}

void paintCup(QPainter &painter, const AnimePose &pose, double side) {
  painter.save();
  painter.translate(5 * pose.turn, 0);
  painter.scale(side, 1);
  QPainterPath cup;
  cup.addRoundedRect(QRectF(88, -112, 30, 62), 15, 18);
  AnimeBrush::shape(painter, cup, QColor(dark), ink);
  QPainterPath pad;
  pad.addRoundedRect(QRectF(84, -104, 13, 46), 6.5, 7);
  AnimeBrush::shape(painter, pad, QColor(cream), ink, 4);
  painter.translate(109, -81);
  painter.scale(20, 20);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(gold));
  painter.drawPath(AnimeBrush::star());
  painter.restore();
}

void paintBand(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(5 * pose.turn, 0);
  QPainterPath band;
  band.moveTo(-103, -96);
  band.cubicTo(-108, -246, 108, -246, 103, -96);
  AnimeBrush::stroke(painter, band, QColor(ink), 20);
  AnimeBrush::stroke(painter, band, QColor(dark), 11);
  QPainterPath light;
  light.moveTo(-62, -190);
  light.quadTo(-40, -205, -14, -208);
  AnimeBrush::stroke(painter, light, Shade::faded(0xffa25d93, 0.9), 3.4);
  painter.restore();
}

void paintClip(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(-64 + frontTravel * pose.turn, -136);
  painter.rotate(-16);
  painter.scale(34, 34);
  AnimeBrush::shape(painter, AnimeBrush::star(), QColor(gold), goldLine, 0.11);
  painter.restore();
}

} // namespace

void paintBehind(QPainter &painter, const AnimePose &pose) {
  paintTail(painter, pose);
  paintTie(painter, pose);
  const QPainterPath back = bob(pose);
  AnimeBrush::shape(painter, back, QColor(hairBack), hairLine);
}

void paintBefore(QPainter &painter, const AnimePose &pose) {
  paintLock(painter, pose, -1);
  paintLock(painter, pose, 1);
  paintCrest(painter, pose);
  paintFringe(painter, pose);
  AnimeFace::paintBrows(painter, pose);
  paintClip(painter, pose);
  paintEar(painter, pose, -1);
  paintEar(painter, pose, 1);
  paintBand(painter, pose);
  paintCup(painter, pose, -1);
  paintCup(painter, pose, 1);
}

} // namespace morvo::AnimeHair
