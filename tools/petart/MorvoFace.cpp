#include "MorvoFace.h"

#include "MorvoBones.h"
#include "MorvoColors.h"
#include "Shade.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::MorvoFace {
namespace {

constexpr double eyeAround = 25.5;
constexpr double eyeHeight = 188;
constexpr double mouthHeight = 142;
constexpr double cheekAround = 47;
constexpr double cheekHeight = 142;
constexpr double eyeHalfWidth = 37;
constexpr double eyeHalfHeight = 46;
/// Eyes narrower than this are one line.
constexpr double closed = 0.14;

void paintOpenEye(QPainter &painter, const MorvoPose &pose, double open) {
  const double width = eyeHalfWidth * pose.eyeScale;
  const double height = eyeHalfHeight * pose.eyeScale;
  // The lid comes down from above; the lower rim hardly moves.
  const double top = -height + 1.72 * height * (1 - std::min(open, 1.0));
  const double middle = (top + height) / 2;
  const double half = (height - top) / 2;
  QPainterPath eye;
  eye.addEllipse(QPointF(0, middle), width, half);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::linear({0, -height}, {0, height},
                                 {{0, QColor(MorvoColors::pupil)},
                                  {0.55, QColor(0xff142259)},
                                  {0.85, QColor(MorvoColors::iris)},
                                  {1, QColor(MorvoColors::irisLight)}}));
  painter.drawPath(eye);
  painter.save();
  painter.setClipPath(eye, Qt::IntersectClip);
  const QPointF look = pose.gaze;
  Shade::glow(painter, look + QPointF(0, height * 0.78), width * 0.9, height * 0.5,
              MorvoColors::irisLight, 0.9);
  painter.setBrush(Shade::faded(MorvoColors::pupil, 0.75));
  painter.drawEllipse(look + QPointF(0, 3), width * 0.5, height * 0.52);
  painter.setBrush(Qt::white);
  painter.drawEllipse(look + QPointF(-10, -15) * pose.eyeScale, 12.5 * pose.eyeScale,
                      13.5 * pose.eyeScale);
  painter.setBrush(Shade::faded(0xfffff1c4, 0.92));
  painter.drawEllipse(look + QPointF(13, -6) * pose.eyeScale, 4.5, 5.5);
  painter.setBrush(Shade::faded(0xffdffbff, 0.9));
  painter.drawEllipse(look + QPointF(8, 17) * pose.eyeScale, 6.5, 5.5);
  painter.restore();
  QPainterPath lash;
  lash.arcMoveTo(QRectF(-width, top, 2 * width, 2 * half), 162);
  lash.arcTo(QRectF(-width, top, 2 * width, 2 * half), 162, -144);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::pupil), 6));
  painter.drawPath(lash);
}

void paintLine(QPainter &painter, double sag) {
  QPainterPath lid;
  lid.moveTo(-29, 0);
  lid.quadTo(0, sag, 29, 0);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::pupil), 9));
  painter.drawPath(lid);
}

void paintSwirl(QPainter &painter, double turn) {
  QPainterPath spiral;
  constexpr int points = 40;
  for (int at = 0; at <= points; ++at) {
    const double part = static_cast<double>(at) / points;
    const double angle = (turn + 810 * part) * std::numbers::pi / 180;
    const QPointF point(31 * part * std::cos(angle), 34 * part * std::sin(angle));
    if (at == 0) {
      spiral.moveTo(point);
    } else {
      spiral.lineTo(point);
    }
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(Shade::faded(MorvoColors::foam, 0.75));
  painter.drawEllipse(QPointF(0, 0), 36, 39);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::pupil), 6.5));
  painter.drawPath(spiral);
}

void paintEye(QPainter &painter, const MorvoPose &pose, double side) {
  const double open = side < 0 ? std::min(pose.eyesOpen, 1 - pose.wink) : pose.eyesOpen;
  if (pose.swirl >= 0) {
    paintSwirl(painter, side * pose.swirl);
  } else if (pose.eyesLaughing > 0.5) {
    painter.translate(0, 14);
    paintLine(painter, -46);
  } else if (open < closed) {
    painter.translate(0, 20);
    paintLine(painter, pose.wink > 0.5 ? -34 : 22);
  } else {
    paintOpenEye(painter, pose, open);
  }
}

void paintBrow(QPainter &painter, const MorvoPose &pose, double side) {
  if (pose.brow == 0 && pose.browLift == 0) {
    return;
  }
  // Worried: the inner ends go up. Firm: they go down.
  const double inner = 11 * pose.brow;
  const double height = -eyeHalfHeight * pose.eyeScale - 17 - pose.browLift;
  QPainterPath brow;
  brow.moveTo(-side * 17, height + inner);
  brow.quadTo(0, height - 8, side * 19, height - inner * 0.6);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(
      Shade::faded(MorvoColors::outline,
                   std::min(1.0, std::abs(pose.brow) + std::abs(pose.browLift) / 8)),
      7));
  painter.drawPath(brow);
}

void paintOpenMouth(QPainter &painter, const MorvoPose &pose) {
  const double half = 21 - 9 * pose.mouthRound;
  const double depth = 9 + (34 - 12 * pose.mouthRound) * pose.mouthOpen;
  const double lip = 8 - 16 * pose.mouthRound;
  QPainterPath opened;
  opened.moveTo(-half, 0);
  opened.quadTo(0, lip, half, 0);
  opened.cubicTo(half + 3, depth, -half - 3, depth, -half, 0);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::pupil), 5));
  painter.setBrush(QColor(MorvoColors::mouth));
  painter.drawPath(opened);
  painter.save();
  painter.setClipPath(opened, Qt::IntersectClip);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(MorvoColors::tongue));
  painter.drawEllipse(QPointF(0, depth * 0.86), half * 0.72, depth * 0.36);
  painter.restore();
}

void paintMouth(QPainter &painter, const MorvoPose &pose) {
  constexpr double visible = 0.1;
  if (pose.mouthOpen > visible) {
    paintOpenMouth(painter, pose);
    return;
  }
  painter.setBrush(Qt::NoBrush);
  painter.setPen(Shade::roundPen(QColor(MorvoColors::pupil), 6));
  QPainterPath line;
  if (pose.smile >= 0) {
    const double sag = 14 * pose.smile;
    line.moveTo(-18, 0);
    line.quadTo(-9, sag, 0, 2 * pose.smile);
    line.quadTo(9, sag, 18, 0);
  } else {
    line.moveTo(-14, 8);
    line.quadTo(0, 8 + 14 * pose.smile, 14, 8);
  }
  painter.drawPath(line);
}

} // namespace

void paint(QPainter &painter, const MorvoPose &pose) {
  const auto at = [&](double around, double height, const auto &draw) {
    const auto [place, width] = MorvoBones::onSkin(pose, around, height);
    painter.save();
    painter.translate(place);
    painter.scale(std::max(width, 0.1), 1);
    draw();
    painter.restore();
  };
  for (const double side : {-1.0, 1.0}) {
    at(side * cheekAround, cheekHeight, [&] {
      Shade::glow(painter, {0, 0}, 34, 21, MorvoColors::blush, std::min(1.0, pose.blush * 1.25));
    });
    at(side * eyeAround, eyeHeight, [&] {
      paintBrow(painter, pose, side);
      painter.translate(pose.gaze * 0.25);
      paintEye(painter, pose, side);
    });
  }
  at(0, mouthHeight, [&] {
    painter.translate(pose.gaze * 0.3);
    paintMouth(painter, pose);
  });
}

} // namespace morvo::MorvoFace
