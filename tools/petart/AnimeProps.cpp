#include "AnimeProps.h"

#include "AnimeBrush.h"
#include "AnimeColors.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

namespace morvo::AnimeProps {
namespace {

using namespace AnimeColors;

void paintBraces(QPainter &painter, double opacity) {
  QPainterPath braces;
  for (const double side : {-1.0, 1.0}) {
    braces.moveTo(side * 0.12, -0.4);
    braces.quadTo(side * 0.32, -0.42, side * 0.3, -0.18);
    braces.quadTo(side * 0.3, 0, side * 0.46, 0);
    braces.quadTo(side * 0.3, 0, side * 0.3, 0.18);
    braces.quadTo(side * 0.32, 0.42, side * 0.12, 0.4);
  }
  AnimeBrush::stroke(painter, braces, Shade::faded(cream, opacity), 0.3);
  AnimeBrush::stroke(painter, braces, Shade::faded(0xffe0663a, opacity), 0.15);
}

void paintSnore(QPainter &painter, double opacity) {
  AnimeBrush::stroke(painter, Shapes::snore(), Shade::faded(dark, opacity), 0.36);
  AnimeBrush::stroke(painter, Shapes::snore(), Shade::faded(clothLight, opacity), 0.2);
}

void paintFilled(QPainter &painter, const QPainterPath &path, QRgb fill, QRgb outline,
                 double opacity) {
  painter.setPen(Shade::roundPen(Shade::faded(outline, opacity), 0.1));
  painter.setBrush(Shade::faded(fill, opacity));
  painter.drawPath(path);
}

void paintSpeedLine(QPainter &painter, double opacity) {
  QPainterPath line;
  line.moveTo(0, -0.5);
  line.lineTo(0, 0.5);
  AnimeBrush::stroke(painter, line, Shade::faded(dark, 0.5 * opacity), 0.12);
  AnimeBrush::stroke(painter, line, Shade::faded(cream, opacity), 0.07);
}

} // namespace

void paintLaptop(QPainter &painter, const AnimePose &pose) {
  painter.save();
  painter.translate(0, -26);
  QPainterPath base;
  base.addRoundedRect(QRectF(-76, -12, 152, 16), 8, 8);
  AnimeBrush::shape(painter, base, QColor(creamShade), ink);
  QPainterPath lid;
  lid.moveTo(-62, -8);
  lid.lineTo(-57, -58);
  lid.quadTo(-56, -67, -47, -67);
  lid.lineTo(47, -67);
  lid.quadTo(56, -67, 57, -58);
  lid.lineTo(62, -8);
  lid.closeSubpath();
  AnimeBrush::shape(painter, lid, QColor(cream), ink);
  QPainterPath shade;
  shade.addRect(QRectF(-70, -30, 140, 30));
  AnimeBrush::inside(painter, lid, shade, QColor(creamShade));
  AnimeBrush::stroke(painter, lid, QColor(ink), AnimeBrush::line);
  Shade::glow(painter, {0, -38}, 30, gold, 0.35 + 0.4 * pose.glow);
  painter.translate(0, -38);
  painter.scale(30, 30);
  AnimeBrush::shape(painter, AnimeBrush::star(), QColor(hair), hairLine, 0.1);
  painter.restore();
}

void paintCushion(QPainter &painter) {
  painter.save();
  painter.translate(0, -74);
  painter.rotate(-6);
  painter.scale(158, 136);
  AnimeBrush::shape(
      painter, AnimeBrush::star(),
      Shade::linear({0, -0.5}, {0, 0.5}, {{0, QColor(0xffffb3bd)}, {1, QColor(pink)}}), pinkLine,
      0.04);
  painter.restore();
}

void paintHeart(QPainter &painter, double size) {
  painter.save();
  painter.translate(0, -70);
  Shade::glow(painter, {0, 0}, 80 * size, pink, 0.7);
  painter.scale(92 * size, 92 * size);
  AnimeBrush::shape(painter, Shapes::heart(), QColor(pink), pinkLine, 0.06);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::faded(0xffffffff, 0.75));
  painter.translate(-0.24, -0.24);
  painter.rotate(-35);
  painter.drawEllipse(QPointF(0, 0), 0.11, 0.07);
  painter.restore();
}

void paintAlarm(QPainter &painter, double size) {
  painter.save();
  painter.translate(-116, -152);
  painter.rotate(-16);
  painter.scale(size, size);
  QPainterPath mark;
  mark.moveTo(-13, -66);
  mark.quadTo(0, -78, 13, -66);
  mark.lineTo(6, -14);
  mark.quadTo(0, -8, -6, -14);
  mark.closeSubpath();
  mark.addEllipse(QPointF(0, 8), 10, 10);
  AnimeBrush::stroke(painter, mark, QColor(cream), 15);
  AnimeBrush::shape(painter, mark, QColor(0xffff4d4d), hairLine, 4.5);
  painter.restore();
}

void paintFloater(QPainter &painter, const AnimePose::Floater &floater) {
  using Kind = AnimePose::Floater::Kind;
  painter.save();
  painter.translate(floater.place);
  painter.rotate(floater.turn);
  painter.scale(floater.size, floater.size);
  switch (floater.kind) {
  case Kind::star:
    paintFilled(painter, AnimeBrush::star(), gold, goldLine, floater.opacity);
    break;
  case Kind::heart:
    paintFilled(painter, Shapes::heart(), pink, pinkLine, floater.opacity);
    break;
  case Kind::spark:
    paintFilled(painter, Shapes::sparkle(), clothLight, goldLine, floater.opacity);
    break;
  case Kind::note:
    paintFilled(painter, Shapes::note(), pink, pinkLine, floater.opacity);
    break;
  case Kind::snore:
    paintSnore(painter, floater.opacity);
    break;
  case Kind::code:
    paintBraces(painter, floater.opacity);
    break;
  case Kind::speed:
    paintSpeedLine(painter, floater.opacity);
    break;
  }
  painter.restore();
}

} // namespace morvo::AnimeProps
