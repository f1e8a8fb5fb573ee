#include "AnimeBody.h"

#include "AnimeBrush.h"
#include "AnimeColors.h"
#include "Motion.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace morvo::AnimeBody {
namespace {

using namespace AnimeColors;

constexpr double standingHips = 88;
constexpr double sittingHips = 40;
constexpr QPointF shoulder(44, -86);
constexpr double armLength = 97;
constexpr QPointF hip(23, -4);
constexpr double legLength = 84;
constexpr QPointF standingFoot(27, -15);
constexpr QPointF sittingFoot(44, -23);

double angleOf(const QPolygonF &hose) {
  const QPointF way = hose.back() - hose[hose.size() - 3];
  return std::atan2(way.y(), way.x()) * 180 / std::numbers::pi;
}

void paintShoe(QPainter &painter, QPointF place, double turn, double side) {
  painter.save();
  painter.translate(place);
  painter.rotate(turn);
  painter.scale(side, 1);
  QPainterPath shoe;
  shoe.moveTo(-19, 12);
  shoe.cubicTo(-23, -4, -17, -17, -2, -17);
  shoe.cubicTo(14, -17, 29, -4, 29, 12);
  shoe.closeSubpath();
  AnimeBrush::shape(painter, shoe, QColor(hair), hairLine);
  QPainterPath toe;
  toe.addEllipse(QPointF(22, 10), 17, 15);
  AnimeBrush::inside(painter, shoe, toe, QColor(cream));
  QPainterPath sole;
  sole.addRoundedRect(QRectF(-22, 6, 54, 10), 5, 5);
  AnimeBrush::shape(painter, sole, QColor(cream), hairLine, 4);
  painter.restore();
}

/// A shoe from below, on a leg that is stretched towards the eye.
void paintSole(QPainter &painter, QPointF place, double turn) {
  painter.save();
  painter.translate(place);
  painter.rotate(turn);
  QPainterPath rim;
  rim.addRoundedRect(QRectF(-22, -26, 44, 50), 21, 22);
  AnimeBrush::shape(painter, rim, QColor(hair), hairLine);
  QPainterPath sole;
  sole.addRoundedRect(QRectF(-15, -19, 30, 37), 14.5, 15);
  AnimeBrush::shape(painter, sole, QColor(cream), hairLine, 3.6);
  painter.scale(17, 17);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(hairLight));
  painter.drawPath(AnimeBrush::star());
  painter.restore();
}

void paintLeg(QPainter &painter, const AnimePose &pose, int index) {
  const double side = index == 0 ? -1 : 1;
  const AnimePose::Leg &leg = pose.legs.at(static_cast<std::size_t>(index));
  const QPointF from = torso(pose).map(QPointF(side * hip.x(), hip.y()));
  const QPointF foot = QPointF(side * standingFoot.x(), standingFoot.y()) + leg.foot;
  const QPolygonF bone = AnimeBrush::hose(from, foot + QPointF(0, -6), legLength, side * leg.knee);
  const auto part = [&](double start, double end, double half) {
    return AnimeBrush::tube(AnimeBrush::stretch(bone, start, end), half, half);
  };
  AnimeBrush::shape(painter, part(0, 1, 13.5), QColor(skin), skinLine);
  AnimeBrush::inside(painter, part(0, 1, 13.5), part(0.3, 0.52, 14), QColor(skinShade));
  AnimeBrush::shape(painter, part(0.62, 1, 14.5), QColor(cream), skinLine, 4.4);
  AnimeBrush::inside(painter, part(0.62, 1, 14.5), part(0.67, 0.76, 15), QColor(hair));
  AnimeBrush::shape(painter, part(0, 0.4, 19), QColor(dark), ink);
  paintShoe(painter, foot, leg.turn, side);
}

QPainterPath hoodie(const AnimePose &pose) {
  const double chest = 1.6 * pose.breath;
  QPainterPath path;
  path.moveTo(0, -110);
  path.cubicTo(-34, -110, -50 - chest, -102, -54 - chest, -84);
  path.cubicTo(-58 - chest, -52, -60, -20, -65, 4);
  path.quadTo(-66, 18, -52, 18);
  path.lineTo(52, 18);
  path.quadTo(66, 18, 65, 4);
  path.cubicTo(60, -20, 58 + chest, -52, 54 + chest, -84);
  path.cubicTo(50 + chest, -102, 34, -110, 0, -110);
  return path;
}

void paintEmblem(QPainter &painter) {
  painter.save();
  painter.translate(0, -52);
  painter.scale(38, 38);
  AnimeBrush::shape(painter, AnimeBrush::star(), QColor(cream), clothDark, 0.1);
  painter.restore();
}

void paintStrings(QPainter &painter, const AnimePose &pose) {
  for (const double side : {-1.0, 1.0}) {
    const QPointF from(side * 14, -92);
    const QPointF to =
        from + QPointF(side * 3 + 0.25 * pose.follow.locks, 24 - 0.3 * pose.follow.lift);
    QPainterPath string;
    string.moveTo(from);
    string.quadTo(from + QPointF(side * 3, 10), to);
    AnimeBrush::stroke(painter, string, QColor(hairLine), 6.5);
    AnimeBrush::stroke(painter, string, QColor(cream), 3.2);
    painter.setPen(Shade::roundPen(QColor(hairLine), 2.6));
    painter.setBrush(QColor(hair));
    painter.drawEllipse(to, 4.6, 4.6);
  }
}

void paintHand(QPainter &painter, const AnimePose::Arm &arm, QPointF wrist, double angle) {
  painter.save();
  painter.translate(wrist);
  painter.rotate(angle - 90 + arm.wrist);
  if (arm.shape == AnimePose::Hand::open) {
    for (const double finger : {-26.0, 0.0, 26.0}) {
      painter.save();
      painter.translate(0, 8);
      painter.rotate(finger);
      QPainterPath tip;
      tip.addRoundedRect(QRectF(-5.5, 0, 11, 21), 5.5, 5.5);
      AnimeBrush::shape(painter, tip, QColor(skin), skinLine, 4);
      painter.restore();
    }
  }
  QPainterPath thumb;
  thumb.addEllipse(QPointF(-11, 5), 6, 7.5);
  AnimeBrush::shape(painter, thumb, QColor(skin), skinLine, 4);
  QPainterPath palm;
  palm.addEllipse(QPointF(0, 7), 13.5, 14);
  AnimeBrush::shape(painter, palm, QColor(skin), skinLine, 4);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(skin));
  painter.drawEllipse(QPointF(-7.5, 6), 6, 5);
  if (arm.shape == AnimePose::Hand::open) {
    painter.drawEllipse(QPointF(0, 12), 9.5, 8);
  }
  painter.restore();
}

void paintArm(QPainter &painter, const AnimePose &pose, int index) {
  const AnimePose::Arm &arm = pose.arms.at(static_cast<std::size_t>(index));
  painter.save();
  // Both arms are drawn as the right one, so that pairs of numbers give pairs of poses.
  painter.scale(index == 0 ? -1 : 1, 1);
  const QPolygonF bone = AnimeBrush::hose(shoulder, shoulder + arm.hand, armLength, -arm.elbow);
  paintHand(painter, arm, AnimeBrush::stretch(bone, 0, 0.95).back(), angleOf(bone));
  const QPainterPath sleeve = AnimeBrush::tube(AnimeBrush::stretch(bone, 0, 0.84), 15, 19);
  QPainterPath joint;
  joint.addEllipse(shoulder, 15, 15);
  AnimeBrush::lit(painter, joint.united(sleeve), QColor(cloth), clothLight, clothLine,
                  index == 0 ? -1 : 1);
  AnimeBrush::inside(painter, sleeve,
                     AnimeBrush::tube(AnimeBrush::stretch(bone, 0.1, 0.84), 9, 12)
                         .translated(index == 0 ? QPointF(-12, 4) : QPointF(12, 4)),
                     QColor(clothShade));
  const QPainterPath cuff = AnimeBrush::tube(AnimeBrush::stretch(bone, 0.78, 0.95), 17, 16);
  AnimeBrush::shape(painter, cuff, QColor(clothShade), clothLine);
  painter.restore();
}

} // namespace

QTransform torso(const AnimePose &pose) {
  QTransform transform;
  transform.translate(pose.sway, pose.crouch - (pose.sitting ? sittingHips : standingHips));
  transform.rotate(pose.lean);
  return transform;
}

void paintLegs(QPainter &painter, const AnimePose &pose) {
  paintLeg(painter, pose, 0);
  paintLeg(painter, pose, 1);
}

void paintLap(QPainter &painter, const AnimePose &pose) {
  const QTransform body = torso(pose);
  for (const double side : {-1.0, 1.0}) {
    const QPolygonF thigh =
        AnimeBrush::hose(body.map(QPointF(side * 30, -2)),
                         QPointF(side * sittingFoot.x(), sittingFoot.y() - 4), 30, 0);
    AnimeBrush::shape(painter, AnimeBrush::tube(thigh, 22, 20), QColor(dark), ink);
  }
}

void paintSoles(QPainter &painter, const AnimePose &pose) {
  for (const int index : {0, 1}) {
    const double side = index == 0 ? -1 : 1;
    const AnimePose::Leg &leg = pose.legs.at(static_cast<std::size_t>(index));
    paintSole(painter, QPointF(side * sittingFoot.x(), sittingFoot.y()) + leg.foot,
              side * 12 + leg.turn);
  }
}

void paintHood(QPainter &painter, const AnimePose & /*pose*/) {
  QPainterPath hood;
  hood.moveTo(-50, -90);
  hood.cubicTo(-74, -118, -60, -140, 0, -140);
  hood.cubicTo(60, -140, 74, -118, 50, -90);
  hood.closeSubpath();
  AnimeBrush::shape(painter, hood, QColor(clothDark), clothLine);
}

void paintTorso(QPainter &painter, const AnimePose &pose) {
  const QPainterPath body = hoodie(pose);
  AnimeBrush::lit(painter, body, QColor(cloth), clothLight, clothLine);
  QPainterPath shade;
  shade.moveTo(30, -110);
  shade.cubicTo(44, -70, 40, -20, 26, 20);
  shade.lineTo(80, 20);
  shade.lineTo(80, -110);
  AnimeBrush::inside(painter, body, shade, QColor(clothShade));
  QPainterPath chin;
  chin.addEllipse(QPointF(0, -112), 58, 26);
  AnimeBrush::inside(painter, body, chin, QColor(clothShade));
  QPainterPath hem;
  hem.addRect(-70, 3, 140, 18);
  AnimeBrush::inside(painter, body, hem, QColor(clothDark));
  QPainterPath pocket;
  pocket.moveTo(-28, -26);
  pocket.lineTo(28, -26);
  pocket.quadTo(42, -14, 42, 2);
  pocket.moveTo(-28, -26);
  pocket.quadTo(-42, -14, -42, 2);
  AnimeBrush::stroke(painter, pocket, QColor(clothDark), 4);
  paintEmblem(painter);
  AnimeBrush::stroke(painter, body, QColor(clothLine), AnimeBrush::line);
  paintStrings(painter, pose);
}

void paintArms(QPainter &painter, const AnimePose &pose, AnimePose::Layer layer) {
  for (const int index : {0, 1}) {
    if (pose.arms.at(static_cast<std::size_t>(index)).layer == layer) {
      paintArm(painter, pose, index);
    }
  }
}

} // namespace morvo::AnimeBody
