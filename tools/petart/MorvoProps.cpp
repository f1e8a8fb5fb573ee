#include "MorvoProps.h"

#include "MorvoColors.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::MorvoProps {
namespace {

using Shade::faded;

void paintBubble(QPainter &painter, const MorvoPose::Floater &bubble) {
  const double radius = bubble.size / 2;
  painter.setBrush(Shade::radial(bubble.centre, radius,
                                 {{0, faded(0xffeaffff, 0.28 * bubble.opacity)},
                                  {0.7, faded(0xff9fe9ff, 0.42 * bubble.opacity)},
                                  {1, faded(0xff4fbaff, 0.75 * bubble.opacity)}}));
  painter.setPen(QPen(faded(0xff2f86da, 0.9 * bubble.opacity), 2.6));
  painter.drawEllipse(bubble.centre, radius, radius);
  painter.setPen(Qt::NoPen);
  painter.setBrush(faded(0xffffffff, 0.95 * bubble.opacity));
  painter.drawEllipse(bubble.centre - QPointF(radius, radius) * 0.36, radius * 0.24, radius * 0.2);
  painter.setBrush(faded(0xffffffff, 0.45 * bubble.opacity));
  painter.drawEllipse(bubble.centre + QPointF(radius, radius) * 0.4, radius * 0.12, radius * 0.12);
}

/// A shape of `Shapes` at the floater, filled and with an edge that reads on every ground.
void paintSign(QPainter &painter, const MorvoPose::Floater &sign, const QPainterPath &shape,
               QRgb fill, QRgb edge) {
  painter.save();
  painter.translate(sign.centre);
  painter.rotate(sign.turn);
  painter.scale(sign.size, sign.size);
  painter.setPen(Shade::roundPen(faded(edge, sign.opacity), 5 / std::max(sign.size, 1.0)));
  painter.setBrush(faded(fill, sign.opacity));
  painter.drawPath(shape);
  painter.restore();
}

void paintSnore(QPainter &painter, const MorvoPose::Floater &snore) {
  painter.save();
  painter.translate(snore.centre);
  painter.rotate(snore.turn);
  painter.scale(snore.size, snore.size);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(faded(MorvoColors::outline, snore.opacity), 0.36));
  painter.drawPath(Shapes::snore());
  painter.setPen(Shade::roundPen(faded(0xffcdf3ff, snore.opacity), 0.18));
  painter.drawPath(Shapes::snore());
  painter.restore();
}

/// A drawn exclamation mark above the left side of the head, away from the lantern.
void paintAlarm(QPainter &painter, double size) {
  painter.save();
  painter.translate(82, 120);
  painter.rotate(-14);
  painter.scale(size, size);
  QPainterPath mark;
  mark.moveTo(-13, -84);
  mark.cubicTo(-15, -96, 15, -96, 13, -84);
  mark.lineTo(8, -32);
  mark.cubicTo(6, -22, -6, -22, -8, -32);
  mark.closeSubpath();
  mark.addEllipse(QPointF(0, -2), 11, 11);
  painter.setPen(Shade::roundPen(QColor(0xffffffff), 15));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(mark);
  painter.setPen(Shade::roundPen(QColor(0xff8f3d10), 5));
  painter.setBrush(
      Shade::linear({0, -92}, {0, 10}, {{0, QColor(0xffffc14a)}, {1, QColor(0xffff7a2b)}}));
  painter.drawPath(mark);
  painter.restore();
}

/// A fan with ribs and a scalloped rim, about the middle of its hinge.
QPainterPath clamShape(double half, double height) {
  QPolygonF rim{{-half * 0.5, 0}};
  constexpr int lobes = 5;
  for (int lobe = 0; lobe <= 2 * lobes; ++lobe) {
    const double angle = (200 - 22.0 * lobe) * std::numbers::pi / 180;
    const double reach = lobe % 2 == 0 ? 0.93 : 1.04;
    rim.append(
        {half * reach * std::cos(angle), -height * 0.42 - height * 0.58 * reach * std::sin(angle)});
  }
  rim.append({half * 0.5, 0});
  return Shapes::closedThrough(rim);
}

} // namespace

void paintWater(QPainter &painter, const MorvoPose &pose, const MorvoBones &bones) {
  if (pose.spout > 1) {
    painter.save();
    painter.translate(bones.skeleton.place(bones.body, {-14, -312}));
    const QPolygonF spine = Shapes::spine(pose.spout + 12, pose.spoutSway);
    const QPainterPath column =
        Shapes::limb(spine, [](double part) { return 19 - 7 * part + 11 * part * part; });
    painter.setPen(Shade::roundPen(faded(0xff2f8fe0, 0.9), 4));
    painter.setBrush(
        Shade::linear(spine.front(), spine.back(),
                      {{0, faded(MorvoColors::water, 0.95)}, {1, faded(0xffd9f7ff, 0.92)}}));
    painter.drawPath(column);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Shade::roundPen(faded(0xffffffff, 0.8), 4));
    painter.drawPath(Shapes::openThrough(
        {spine[4] - QPointF(6, 0), spine[9] - QPointF(5, 0), spine[14] - QPointF(6, 0)}));
    const QPointF top = spine.back();
    painter.setPen(Shade::roundPen(faded(0xff2f8fe0, 0.9), 3.5));
    painter.setBrush(faded(0xffe4faff, 0.95));
    for (const double side : {-1.0, 1.0}) {
      painter.drawEllipse(top + QPointF(side * 22, 6), 19, 15);
    }
    painter.drawEllipse(top - QPointF(0, 5), 21, 17);
    painter.restore();
  }
  for (const MorvoPose::Floater &drop : pose.drops) {
    paintSign(painter, drop, Shapes::drop(), 0xff9fe3ff, 0xff2a80d8);
  }
}

void paintShell(QPainter &painter, const MorvoPose &pose, const MorvoBones &bones) {
  if (pose.shell <= 0) {
    return;
  }
  painter.save();
  painter.setTransform(bones.skeleton.world(bones.body), true);
  const QPointF hinge(14, -2);
  Shade::glow(painter, hinge - QPointF(0, 92), 150, 96, 0xffc8fff2,
              pose.shell * (0.5 + 0.3 * pose.typing));
  painter.translate(hinge);
  painter.scale(pose.shell, pose.shell);
  const QPainterPath lid = clamShape(92, 100);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::shellEdge), 5));
  painter.setBrush(Shade::radial({-20, -60}, 130,
                                 {{0, QColor(MorvoColors::pearl)},
                                  {0.5, QColor(0xfff6c9e4)},
                                  {1, QColor(MorvoColors::shell)}}));
  painter.drawPath(lid);
  painter.setPen(Shade::roundPen(faded(MorvoColors::shellEdge, 0.42), 4));
  for (int rib = -2; rib <= 2; ++rib) {
    painter.drawPath(Shapes::openThrough({QPointF(rib * 9.0, -12), QPointF(rib * 22.0, -48),
                                          QPointF(rib * 32.0, -88 + 5.0 * rib * rib)}));
  }
  painter.setPen(Qt::NoPen);
  Shade::glow(painter, {0, -52}, 34, 0xff8ffff0, 0.45 + 0.4 * pose.typing);
  painter.setPen(Shade::roundPen(QColor(0xff2a8f9c), 5.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(QPolygonF{{-14, -64}, {-26, -52}, {-14, -40}});
  painter.drawPolyline(QPolygonF{{14, -64}, {26, -52}, {14, -40}});
  painter.drawLine(QPointF(5, -68), QPointF(-5, -36));
  painter.restore();
}

void paintAround(QPainter &painter, const MorvoPose &pose) {
  for (const MorvoPose::Floater &bubble : pose.bubbles) {
    paintBubble(painter, bubble);
  }
  for (const MorvoPose::Floater &heart : pose.hearts) {
    paintSign(painter, heart, Shapes::heart(), MorvoColors::heart, MorvoColors::heartEdge);
  }
  for (const MorvoPose::Floater &note : pose.notes) {
    paintSign(painter, note, Shapes::note(), MorvoColors::honey, 0xff8a5714);
  }
  for (const MorvoPose::Floater &snore : pose.snores) {
    paintSnore(painter, snore);
  }
  if (pose.alarm > 0) {
    paintAlarm(painter, pose.alarm);
  }
}

} // namespace morvo::MorvoProps
