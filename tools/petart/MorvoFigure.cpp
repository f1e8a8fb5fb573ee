#include "MorvoFigure.h"

#include "MorvoBones.h"
#include "MorvoColors.h"
#include "MorvoFace.h"
#include "MorvoProps.h"
#include "PetArt.h"
#include "Shade.h"
#include "Shapes.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace morvo::MorvoFigure {
namespace {

constexpr double outlineWidth = 5.5;

QBrush outlineBrush() {
  return Shade::linear({-150, -320}, {150, 0},
                       {{0, QColor(0xff2a62c8)}, {1, QColor(MorvoColors::outline)}});
}

QPainterPath bodyShape(double puff) {
  const double cheek = 161 + 14 * puff;
  QPainterPath path;
  path.moveTo(0, -330);
  path.cubicTo(92, -330, 150, -270, cheek, -172);
  path.cubicTo(cheek + 10, -66, 108, -3, 0, -3);
  path.cubicTo(-108, -3, -cheek - 10, -66, -cheek, -172);
  path.cubicTo(-150, -270, -92, -330, 0, -330);
  return path;
}

/// A flipper: round where it leaves the body, widest behind the middle, round at the tip.
double flipper(double part) {
  const double root = 1 - std::min(1.0, part / 0.28);
  const double widest = 15 + 14 * std::sin(std::numbers::pi * std::min(1.0, part * 0.95));
  return widest * std::sqrt(1 - 0.72 * root * root) *
         std::sqrt(std::max(1 - std::pow(part, 3), 0.0));
}

double leaf(double part, double width) {
  return width * std::pow(std::sin(std::numbers::pi * std::pow(part, 0.72)), 0.8);
}

/// How far light round this point may reach and still end inside of the canvas.
double reach(QPointF point) {
  constexpr double margin = 5;
  const double away =
      std::min({point.x(), point.y(), canvasSide - point.x(), canvasSide - point.y()});
  return std::max(away - margin, 1.0);
}

/// The halo must end inside of the canvas, wherever the body has gone.
void paintAura(QPainter &painter, const QPointF &centre, double glow) {
  constexpr double margin = 5;
  const double radiusX = std::min({224.0, centre.x() - margin, canvasSide - margin - centre.x()});
  const double radiusY = std::min({206.0, centre.y() - margin, canvasSide - margin - centre.y()});
  painter.save();
  painter.translate(centre);
  painter.scale(1, radiusY / radiusX);
  painter.setPen(Qt::NoPen);
  using Shade::faded;
  painter.setBrush(Shade::radial({0, 0}, radiusX,
                                 {{0, faded(MorvoColors::bright, 0.62 * glow)},
                                  {0.6, faded(MorvoColors::bright, 0.5 * glow)},
                                  {0.74, faded(MorvoColors::bright, 0.26 * glow)},
                                  {0.88, faded(MorvoColors::bright, 0.07 * glow)},
                                  {1, faded(MorvoColors::bright, 0)}}));
  painter.drawEllipse(QPointF(0, 0), radiusX, radiusX);
  painter.restore();
}

/// A leaf of skin with ribs, from the origin along its spine.
void paintLeaf(QPainter &painter, const QPolygonF &spine, double width, double glow) {
  const QPainterPath shape =
      Shapes::limb(spine, [width](double part) { return 5 + leaf(part, width - 5); });
  painter.setPen(QPen(outlineBrush(), outlineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Shade::linear(spine.front(), spine.back(),
                                 {{0, QColor(MorvoColors::abyss)},
                                  {0.45, QColor(MorvoColors::deep)},
                                  {0.8, QColor(0xff72cdff)},
                                  {1, Shade::mixed(0xff9aeaff, 0xffffffff, 0.5 * glow)}}));
  painter.drawPath(shape);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(Shade::faded(MorvoColors::foam, 0.4), 3));
  const QPointF across =
      QPointF(spine.last().y() - spine.first().y(), spine.first().x() - spine.last().x()) /
      std::max(1.0, QLineF(spine.first(), spine.last()).length());
  const auto point = [&spine](double part) {
    return spine[static_cast<qsizetype>(part * static_cast<double>(spine.size() - 1))];
  };
  for (const double rib : {-0.42, 0.0, 0.42}) {
    painter.drawPath(Shapes::openThrough({point(0.25) + across * rib * width * 0.4,
                                          point(0.5) + across * rib * width,
                                          point(0.78) + across * rib * width * 0.75}));
  }
}

void paintEar(QPainter &painter, const QTransform &place, const MorvoPose::Fin &ear, double glow) {
  painter.save();
  painter.setTransform(place, true);
  paintLeaf(painter, Shapes::spine(88, ear.bend * 0.5, ear.bend * 0.5), 30, glow);
  painter.restore();
}

void paintArm(QPainter &painter, const QTransform &place, const MorvoPose::Fin &arm) {
  painter.save();
  painter.setTransform(place, true);
  const QPolygonF spine = Shapes::spine(84, arm.bend * 0.5, arm.bend * 0.5);
  const QPainterPath shape = Shapes::limb(spine, flipper);
  painter.setPen(QPen(outlineBrush(), outlineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Shade::linear(spine.front(), spine.back(),
                                 {{0, QColor(MorvoColors::deep)},
                                  {0.5, QColor(MorvoColors::middle)},
                                  {1, QColor(MorvoColors::bright)}}));
  painter.drawPath(shape);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(Shade::faded(MorvoColors::foam, 0.55), 4));
  painter.drawPath(
      Shapes::openThrough({spine[8] + QPointF(9, 0), spine[12] + QPointF(8, 0), spine[14]}));
  painter.restore();
}

void paintTail(QPainter &painter, const QTransform &place, const MorvoPose &pose) {
  painter.save();
  painter.setTransform(place, true);
  const QPolygonF spine = Shapes::spine(98, pose.tail, pose.tailWhip);
  painter.save();
  painter.translate(spine.back());
  painter.rotate(Shapes::heading(spine));
  painter.translate(0, 10);
  for (const double side : {-1.0, 1.0}) {
    painter.save();
    painter.scale(side, 1);
    painter.rotate(48);
    paintLeaf(painter, Shapes::spine(66, 34, 16), 23, pose.glow);
    painter.restore();
  }
  painter.restore();
  const QPainterPath shape = Shapes::limb(
      spine, [](double part) { return (31 - 17 * std::pow(part, 0.8)) * (part < 0.05 ? 0.5 : 1); });
  painter.setPen(QPen(outlineBrush(), outlineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Shade::linear(spine.front(), spine.back(),
                                 {{0, QColor(MorvoColors::abyss)}, {1, QColor(0xff59b6fb)}}));
  painter.drawPath(shape);
  painter.restore();
}

void paintStalk(QPainter &painter, const QTransform &place, const MorvoPose &pose) {
  painter.save();
  painter.setTransform(place, true);
  const QPolygonF spine = Shapes::spine(104, pose.stalk, pose.stalkWhip);
  const QPainterPath shape = Shapes::limb(spine, [](double part) { return 8.5 - 4 * part; });
  painter.setPen(QPen(outlineBrush(), 4.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Shade::linear(spine.front(), spine.back(),
                                 {{0, QColor(MorvoColors::middle)}, {1, QColor(0xffb9f0ff)}}));
  painter.drawPath(shape);

  const QRgb light = Shade::mixed(MorvoColors::honey, MorvoColors::warning, pose.warning).rgb();
  const double bright = pose.lantern;
  const double lit = std::min(1.0, 0.25 + bright);
  const QPointF bulb = spine.back();
  const double halo = std::min(44 + 20 * bright, reach(place.map(bulb)));
  Shade::glow(painter, bulb, halo, light, 0.95 * bright);
  painter.setBrush(Shade::radial(bulb, 25, bulb - QPointF(7, 8),
                                 {{0, Shade::mixed(light, 0xffffffff, 0.3 + 0.6 * bright)},
                                  {0.5, Shade::mixed(0xff8d7a5a, light, lit)},
                                  {1, Shade::mixed(0xff6b5434, 0xfff2a437, lit)}}));
  painter.setPen(Shade::roundPen(QColor(MorvoColors::honeyEdge), 4));
  painter.drawEllipse(bulb, 23, 23);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::faded(0xffffffff, 0.4 + 0.5 * bright));
  painter.drawEllipse(bulb - QPointF(8, 9), 6.5, 5);
  painter.restore();
}

void paintBelly(QPainter &painter, const MorvoPose &pose) {
  const QPointF centre = MorvoBones::onSkin(pose, 0, 66).place;
  painter.setPen(Qt::NoPen);
  for (const double rim : {9.0, 4.0, 0.0}) {
    painter.setBrush(Shade::linear(centre - QPointF(0, 78), centre + QPointF(0, 70),
                                   {{0, Shade::faded(MorvoColors::foam, rim > 0 ? 0.3 : 0.95)},
                                    {0.5, Shade::faded(0xffcdf6ff, rim > 0 ? 0.24 : 0.85)},
                                    {1, Shade::faded(MorvoColors::bright, 0.12)}}));
    painter.drawEllipse(centre, 106 + rim, 72 + rim);
  }
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(Shade::faded(0xff5fb4ee, 0.42), 3.5));
  for (int fold = 0; fold < 3; ++fold) {
    const double half = 62 - 12.0 * fold;
    QPainterPath line;
    line.moveTo(centre + QPointF(-half, 4 + 19 * fold));
    line.quadTo(centre + QPointF(0, 21 + 19 * fold), centre + QPointF(half, 4 + 19 * fold));
    painter.drawPath(line);
  }
}

/// A wave of light lifts the spots it passes.
double spotLight(const MorvoPose &pose, double along) {
  if (pose.wavePhase < 0) {
    return 0;
  }
  const double away = std::abs(along - pose.wavePhase);
  const double around = std::min(away, 1 - away);
  return std::max(0.0, 1 - around * 5);
}

void paintSpots(QPainter &painter, const MorvoPose &pose) {
  struct Spot {
    double around;
    double height;
    double radius;
    double along;
  };
  constexpr std::array spots{
      Spot{-72, 232, 7, 0.05},   Spot{-62, 262, 8.5, 0.2}, Spot{-44, 288, 6.5, 0.35},
      Spot{30, 292, 5.5, 0.55},  Spot{52, 268, 8, 0.7},    Spot{66, 238, 7, 0.85},
      Spot{-80, 128, 6.5, 0.95}, Spot{-70, 104, 5, 0.1},   Spot{72, 116, 6, 0.8},
  };
  for (const Spot &spot : spots) {
    const auto [place, width] = MorvoBones::onSkin(pose, spot.around, spot.height);
    constexpr double turnedAway = 0.12;
    if (width < turnedAway) {
      continue;
    }
    const double light = std::min(1.0, 0.35 + 0.55 * pose.glow + spotLight(pose, spot.along));
    const double radius = spot.radius * (1 + 0.35 * spotLight(pose, spot.along));
    Shade::glow(painter, place, radius * 2.6 * width, radius * 2.6, MorvoColors::rim, 0.6 * light);
    painter.setBrush(Shade::faded(0xffe6ffff, light));
    painter.drawEllipse(place, radius * width, radius);
  }
}

/// Shade that follows the outline inside of it, on the side away from `from`. Drawn flat: a ramp
/// across the whole body would cost more in the files than it shows.
void paintCrescent(QPainter &painter, const QPainterPath &body, QPointF from, const QColor &color) {
  painter.setBrush(color);
  painter.drawPath(body.subtracted(body.translated(from)));
}

void paintBody(QPainter &painter, const MorvoPose &pose) {
  const QPainterPath body = bodyShape(pose.puff);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::radial({-20, -186}, 232, {-50, -262},
                                 {{0, QColor(0xffbcf4ff)},
                                  {0.22, QColor(0xff85dcff)},
                                  {0.52, QColor(MorvoColors::middle)},
                                  {0.8, QColor(MorvoColors::deep)},
                                  {1, QColor(MorvoColors::abyss)}}));
  painter.drawPath(body);

  painter.save();
  painter.setClipPath(body);
  painter.setPen(Qt::NoPen);
  paintBelly(painter, pose);
  painter.setPen(Qt::NoPen);
  // With its glow the whole skin dims: a sleeper is a dark shape.
  painter.setBrush(Shade::faded(MorvoColors::abyss, std::max(0.0, 0.55 - pose.glow) * 0.75));
  painter.drawPath(body);
  for (const double depth : {8.0, 15.0, 24.0}) {
    paintCrescent(painter, body, {-depth, -depth * 0.8},
                  Shade::faded(MorvoColors::rim, 0.13 + 0.13 * pose.glow));
  }
  paintSpots(painter, pose);
  painter.restore();

  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(outlineBrush(), outlineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(body);
  painter.save();
  painter.translate(-84, -268);
  painter.rotate(-40);
  painter.setPen(Qt::NoPen);
  painter.setBrush(
      Shade::linear({0, -16}, {0, 16},
                    {{0, Shade::faded(0xffffffff, 0.85)}, {1, Shade::faded(0xffffffff, 0.12)}}));
  painter.drawEllipse(QPointF(0, 0), 38, 15);
  painter.drawEllipse(QPointF(-52, 6), 7, 6);
  painter.restore();
}

} // namespace

QImage picture(const MorvoPose &pose) {
  QImage canvas(canvasSide, canvasSide, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  QPainter painter(&canvas);
  painter.setRenderHint(QPainter::Antialiasing);
  const MorvoBones bones(pose);
  const auto world = [&bones](int joint) { return bones.skeleton.world(joint); };
  paintAura(painter, bones.skeleton.place(bones.body, {0, -172}), pose.glow);
  MorvoProps::paintWater(painter, pose, bones);
  paintTail(painter, world(bones.tail), pose);
  paintEar(painter, world(bones.leftEar), pose.leftEar, pose.glow);
  paintEar(painter, world(bones.rightEar), pose.rightEar, pose.glow);
  painter.save();
  painter.setTransform(world(bones.body), true);
  paintBody(painter, pose);
  MorvoFace::paint(painter, pose);
  painter.restore();
  paintStalk(painter, world(bones.stalk), pose);
  MorvoProps::paintShell(painter, pose, bones);
  paintArm(painter, world(bones.leftArm), pose.leftArm);
  paintArm(painter, world(bones.rightArm), pose.rightArm);
  MorvoProps::paintAround(painter, pose);
  return canvas;
}

} // namespace morvo::MorvoFigure
