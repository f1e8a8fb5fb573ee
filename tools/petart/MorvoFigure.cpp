#include "MorvoFigure.h"

#include "PetArt.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace morvo::MorvoFigure {
namespace {

constexpr QRgb outlineColor = 0xff163a80;
constexpr QRgb deepColor = 0xff2457c9;
constexpr QRgb middleColor = 0xff3f97f2;
constexpr QRgb brightColor = 0xff8fe3ff;
constexpr QRgb bellyColor = 0xffe9fcff;
constexpr QRgb finColor = 0xff2f74df;
constexpr QRgb pupilColor = 0xff0e1b45;
constexpr QRgb blushColor = 0xffff8fa8;
constexpr QRgb lanternColor = 0xffffe58a;
constexpr QRgb mouthColor = 0xff8c2748;
constexpr QRgb tongueColor = 0xffff8a9a;
constexpr double outlineWidth = 6.5;
/// Leaves room for outstretched fins in the widest squash.
constexpr double bodyScale = 0.95;

QColor faded(QRgb rgb, double opacity) {
  QColor color(rgb);
  color.setAlphaF(static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
  return color;
}

QPen roundPen(const QColor &color, double width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

// All paths below stand on the origin: the middle of the base line, up is negative.

QPainterPath bodyShape() {
  QPainterPath path;
  path.moveTo(0, -268);
  path.cubicTo(92, -268, 152, -212, 158, -128);
  path.cubicTo(164, -48, 104, -10, 0, -10);
  path.cubicTo(-104, -10, -164, -48, -158, -128);
  path.cubicTo(-152, -212, -92, -268, 0, -268);
  return path;
}

QPainterPath finShape() {
  QPainterPath path;
  path.moveTo(0, -20);
  path.cubicTo(34, -26, 78, 4, 82, 42);
  path.cubicTo(83, 56, 66, 62, 52, 56);
  path.cubicTo(28, 48, 6, 34, 0, 18);
  path.closeSubpath();
  return path;
}

QPainterPath tailShape() {
  QPainterPath path;
  path.moveTo(-24, 22);
  path.cubicTo(22, 22, 44, 0, 48, -34);
  path.cubicTo(18, -40, 4, -66, 12, -88);
  path.cubicTo(38, -92, 56, -80, 62, -64);
  path.cubicTo(72, -82, 92, -88, 114, -76);
  path.cubicTo(118, -52, 100, -34, 76, -30);
  path.cubicTo(74, 12, 48, 48, -18, 50);
  path.closeSubpath();
  return path;
}

QPainterPath heartShape() {
  QPainterPath path;
  path.moveTo(0, 0.42);
  path.cubicTo(-0.62, 0.02, -0.52, -0.42, -0.24, -0.42);
  path.cubicTo(-0.1, -0.42, 0, -0.32, 0, -0.22);
  path.cubicTo(0, -0.32, 0.1, -0.42, 0.24, -0.42);
  path.cubicTo(0.52, -0.42, 0.62, 0.02, 0, 0.42);
  return path;
}

void paintAura(QPainter &painter, double glow) {
  const QPointF centre(0, -142);
  constexpr double radius = 168;
  painter.save();
  painter.translate(centre);
  painter.scale(1.22, 1);
  QRadialGradient light(QPointF(0, 0), radius);
  light.setColorAt(0, faded(brightColor, 0.5 * glow));
  light.setColorAt(0.7, faded(brightColor, 0.3 * glow));
  light.setColorAt(0.88, faded(brightColor, 0.08 * glow));
  light.setColorAt(1, faded(brightColor, 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(light);
  painter.drawEllipse(QPointF(0, 0), radius, radius);
  painter.restore();
}

void paintFin(QPainter &painter, double side, double raised) {
  painter.save();
  painter.scale(side, 1);
  painter.translate(141, -118);
  painter.rotate(14 - raised);
  QLinearGradient shade(0, 0, 80, 40);
  shade.setColorAt(0, QColor(deepColor));
  shade.setColorAt(1, QColor(brightColor));
  painter.setPen(roundPen(QColor(outlineColor), outlineWidth));
  painter.setBrush(shade);
  painter.drawPath(finShape());
  painter.restore();
}

void paintTail(QPainter &painter, double angle) {
  painter.save();
  painter.translate(106, -56);
  painter.rotate(angle - 12);
  painter.scale(0.92, 0.92);
  QLinearGradient shade(0, 40, 90, -80);
  shade.setColorAt(0, QColor(deepColor));
  shade.setColorAt(1, QColor(brightColor));
  painter.setPen(roundPen(QColor(outlineColor), outlineWidth));
  painter.setBrush(shade);
  painter.drawPath(tailShape());
  painter.restore();
}

void paintLantern(QPainter &painter, double angle, double glow) {
  painter.save();
  painter.translate(0, -260);
  painter.rotate(angle);
  QPainterPath stalk;
  stalk.moveTo(0, 0);
  stalk.cubicTo(-4, -34, 8, -58, 34, -62);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(roundPen(QColor(outlineColor), 15));
  painter.drawPath(stalk);
  painter.setPen(roundPen(QColor(middleColor), 6));
  painter.drawPath(stalk);

  const QPointF bulb(42, -58);
  QRadialGradient halo(bulb, 54);
  halo.setColorAt(0, faded(lanternColor, 0.85 * glow));
  halo.setColorAt(0.45, faded(lanternColor, 0.4 * glow));
  halo.setColorAt(1, faded(lanternColor, 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(halo);
  painter.drawEllipse(bulb, 54, 54);
  QRadialGradient light(bulb - QPointF(5, 6), 28);
  light.setColorAt(0, QColor(0xfffffdf0));
  light.setColorAt(0.5, QColor(lanternColor));
  light.setColorAt(1, QColor(0xfff7b54a));
  painter.setBrush(light);
  painter.setPen(roundPen(QColor(0xffb9741f), 4));
  painter.drawEllipse(bulb, 22, 22);
  painter.restore();
}

void paintBody(QPainter &painter) {
  const QPainterPath body = bodyShape();
  QRadialGradient shade(QPointF(-48, -206), 270);
  shade.setColorAt(0, QColor(brightColor));
  shade.setColorAt(0.38, QColor(0xff5cb8fb));
  shade.setColorAt(0.7, QColor(middleColor));
  shade.setColorAt(1, QColor(deepColor));
  painter.setPen(Qt::NoPen);
  painter.setBrush(shade);
  painter.drawPath(body);

  painter.save();
  painter.setClipPath(body);
  QRadialGradient belly(QPointF(0, -62), 118);
  belly.setColorAt(0, faded(bellyColor, 0.98));
  belly.setColorAt(0.7, faded(bellyColor, 0.85));
  belly.setColorAt(1, faded(bellyColor, 0.55));
  painter.setBrush(belly);
  painter.drawEllipse(QPointF(0, -46), 104, 66);
  // Light of the deep from below right: a soft inner edge.
  painter.setBrush(Qt::NoBrush);
  painter.translate(-7, -6);
  painter.setPen(roundPen(faded(0xffa9f4ff, 0.4), 16));
  painter.drawPath(body);
  painter.setPen(roundPen(faded(0xffd8fbff, 0.5), 6));
  painter.drawPath(body);
  painter.restore();

  painter.setBrush(Qt::NoBrush);
  painter.setPen(roundPen(QColor(outlineColor), outlineWidth));
  painter.drawPath(body);

  painter.setPen(Qt::NoPen);
  QLinearGradient gloss(-70, -256, -50, -200);
  gloss.setColorAt(0, faded(0xffffffff, 0.8));
  gloss.setColorAt(1, faded(0xffffffff, 0.1));
  painter.setBrush(gloss);
  painter.save();
  painter.translate(-72, -226);
  painter.rotate(-32);
  painter.drawEllipse(QPointF(0, 0), 34, 15);
  painter.restore();
  painter.setBrush(faded(0xffc9fbff, 0.85));
  painter.drawEllipse(QPointF(98, -208), 7, 7);
  painter.drawEllipse(QPointF(118, -188), 5, 5);
  painter.drawEllipse(QPointF(80, -226), 4.5, 4.5);
}

void paintFeet(QPainter &painter) {
  painter.setPen(roundPen(QColor(outlineColor), outlineWidth));
  for (const double side : {-1.0, 1.0}) {
    QLinearGradient shade(0, -28, 0, 2);
    shade.setColorAt(0, QColor(middleColor));
    shade.setColorAt(1, QColor(finColor));
    painter.setBrush(shade);
    painter.drawEllipse(QPointF(side * 58, -15), 38, 15);
  }
}

void paintOpenEye(QPainter &painter, const MorvoPose &pose, const QPointF &centre) {
  const double width = 33 * pose.eyeScale;
  const double height = 40 * pose.eyeScale * pose.eyesOpen;
  QPainterPath eye;
  eye.addEllipse(centre, width, height);
  painter.save();
  QLinearGradient depth(centre - QPointF(0, height), centre + QPointF(0, height));
  depth.setColorAt(0, QColor(pupilColor));
  depth.setColorAt(0.55, QColor(0xff1b2f78));
  depth.setColorAt(1, QColor(0xff3f7fe0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(depth);
  painter.drawPath(eye);
  painter.setClipPath(eye);
  const QPointF look = pose.gaze * 0.9;
  painter.setBrush(faded(0xff7fe7ff, 0.65));
  painter.drawEllipse(centre + look + QPointF(0, height * 0.72), width * 0.62, height * 0.36);
  painter.setBrush(Qt::white);
  painter.drawEllipse(centre + look + QPointF(-11, -14 * pose.eyesOpen) * pose.eyeScale, 12.5,
                      13.5 * pose.eyesOpen);
  painter.drawEllipse(centre + look + QPointF(12, 11 * pose.eyesOpen) * pose.eyeScale, 6,
                      6 * pose.eyesOpen);
  painter.restore();
}

void paintClosedEye(QPainter &painter, const QPointF &centre, double bend) {
  QPainterPath lid;
  lid.moveTo(centre + QPointF(-28, 0));
  lid.quadTo(centre + QPointF(0, bend), centre + QPointF(28, 0));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(roundPen(QColor(pupilColor), 10));
  painter.drawPath(lid);
}

void paintEyes(QPainter &painter, const MorvoPose &pose) {
  constexpr double narrowest = 0.16;
  for (const double side : {-1.0, 1.0}) {
    const QPointF centre = QPointF(side * 64, -158) + pose.gaze * 0.5;
    if (pose.eyesLaughing > 0.5) {
      paintClosedEye(painter, centre + QPointF(0, 12), -46);
    } else if (pose.eyesOpen < narrowest) {
      paintClosedEye(painter, centre + QPointF(0, 6), 26);
    } else {
      paintOpenEye(painter, pose, centre);
    }
  }
}

void paintFace(QPainter &painter, const MorvoPose &pose) {
  painter.setPen(Qt::NoPen);
  for (const double side : {-1.0, 1.0}) {
    painter.setBrush(faded(blushColor, pose.blush));
    painter.drawEllipse(QPointF(side * 114, -114), 24, 15);
  }
  paintEyes(painter, pose);

  const QPointF mouth = QPointF(0, -126) + pose.gaze * 0.5;
  if (pose.mouthOpen > 0.12) {
    const double depth = 8 + 34 * pose.mouthOpen;
    QPainterPath opened;
    opened.moveTo(mouth + QPointF(-22, 0));
    opened.quadTo(mouth + QPointF(0, 8), mouth + QPointF(22, 0));
    opened.cubicTo(mouth + QPointF(22, depth), mouth + QPointF(-22, depth),
                   mouth + QPointF(-22, 0));
    painter.setPen(roundPen(QColor(pupilColor), 5));
    painter.setBrush(QColor(mouthColor));
    painter.drawPath(opened);
    painter.save();
    painter.setClipPath(opened);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(tongueColor));
    painter.drawEllipse(mouth + QPointF(0, depth * 0.85), 15, depth * 0.36);
    painter.restore();
    return;
  }
  QPainterPath smile;
  smile.moveTo(mouth + QPointF(-18, 0));
  smile.quadTo(mouth + QPointF(-9, 14), mouth + QPointF(0, 2));
  smile.quadTo(mouth + QPointF(9, 14), mouth + QPointF(18, 0));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(roundPen(QColor(pupilColor), 6));
  painter.drawPath(smile);
}

void paintBubble(QPainter &painter, const MorvoPose::Floater &bubble) {
  const double radius = bubble.size / 2;
  QRadialGradient film(bubble.centre, radius);
  film.setColorAt(0, faded(0xffeaffff, 0.15 * bubble.opacity));
  film.setColorAt(0.7, faded(0xff9fe9ff, 0.35 * bubble.opacity));
  film.setColorAt(1, faded(0xff5cc3ff, 0.7 * bubble.opacity));
  painter.setBrush(film);
  painter.setPen(QPen(faded(0xff2f8fe0, 0.9 * bubble.opacity), 3));
  painter.drawEllipse(bubble.centre, radius, radius);
  painter.setPen(Qt::NoPen);
  painter.setBrush(faded(0xffffffff, 0.9 * bubble.opacity));
  painter.drawEllipse(bubble.centre - QPointF(radius, radius) * 0.36, radius * 0.22, radius * 0.22);
}

void paintHeart(QPainter &painter, const MorvoPose::Floater &heart) {
  painter.save();
  painter.translate(heart.centre);
  painter.scale(heart.size, heart.size);
  painter.setPen(roundPen(faded(0xffc23a62, heart.opacity), 0.09));
  painter.setBrush(faded(0xffff7d9c, heart.opacity));
  painter.drawPath(heartShape());
  painter.restore();
}

void paintSnore(QPainter &painter, const MorvoPose::Floater &snore) {
  painter.save();
  painter.translate(snore.centre);
  painter.scale(snore.size, snore.size);
  painter.rotate(-8);
  const QPolygonF letter{{-0.36, -0.42}, {0.36, -0.42}, {-0.36, 0.42}, {0.36, 0.42}};
  painter.setBrush(Qt::NoBrush);
  painter.setPen(roundPen(faded(outlineColor, snore.opacity), 0.34));
  painter.drawPolyline(letter);
  painter.setPen(roundPen(faded(0xffbfeeff, snore.opacity), 0.18));
  painter.drawPolyline(letter);
  painter.restore();
}

/// A drawn exclamation mark above the right side of the head.
void paintAlarm(QPainter &painter, double size) {
  painter.save();
  painter.translate(146, -306);
  painter.rotate(14);
  painter.scale(size, size);
  QPainterPath mark;
  mark.addRoundedRect(QRectF(-13, -78, 26, 62), 13, 13);
  mark.addEllipse(QPointF(0, 8), 14, 14);
  painter.setPen(roundPen(QColor(0xffffffff), 14));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(mark);
  painter.setPen(roundPen(QColor(0xff9c4a12), 5));
  painter.setBrush(QColor(0xffffb02e));
  painter.drawPath(mark);
  painter.restore();
}

} // namespace

QImage picture(const MorvoPose &pose) {
  QImage canvas(canvasSide, canvasSide, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  QPainter painter(&canvas);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.save();
  painter.translate(QPointF(canvasSide / 2.0, baseLine) + pose.shift);
  painter.rotate(pose.tilt);
  painter.scale(bodyScale * pose.widthScale, bodyScale * pose.heightScale);
  paintAura(painter, pose.glow);
  paintTail(painter, pose.tail);
  paintFin(painter, -1, pose.leftFin);
  paintFin(painter, 1, pose.rightFin);
  paintLantern(painter, pose.stalk, pose.glow);
  paintBody(painter);
  paintFeet(painter);
  paintFace(painter, pose);
  if (pose.alarm > 0) {
    paintAlarm(painter, pose.alarm);
  }
  painter.restore();
  for (const MorvoPose::Floater &bubble : pose.bubbles) {
    paintBubble(painter, bubble);
  }
  for (const MorvoPose::Floater &heart : pose.hearts) {
    paintHeart(painter, heart);
  }
  for (const MorvoPose::Floater &snore : pose.snores) {
    paintSnore(painter, snore);
  }
  return canvas;
}

} // namespace morvo::MorvoFigure
