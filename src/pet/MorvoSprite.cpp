#include "pet/MorvoSprite.h"

#include "pet/PetPalette.h"
#include "pet/SoftDisc.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace morvo::MorvoSprite {
namespace {

constexpr SoftDisc glow{.diameter = 120, .blur = 18, .opacity = 0.28};
constexpr QSizeF body(100, 62);
constexpr QSizeF belly(62, 24);
constexpr QPointF bellyPlace(0, 16);
constexpr double bellyOpacity = 0.22;
constexpr QSizeF tail(30, 34);
constexpr double tailPlace = 50;
constexpr double tailDegrees = 8;
constexpr double tailOpacity = 0.9;
constexpr double eyePlace = 13;
constexpr double eyeSide = 10;
constexpr double pupilSide = 3.2;
constexpr QPointF pupilPlace(-1.5, -1.8);
/// A closed eye is a capsule.
constexpr QSizeF lid(11, 2.5);
constexpr int lighter = 130;
constexpr int darker = 125;

QColor faded(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

// The creature lives in the dark: its own colours are those of the dark appearance.
QColor pale() { return PetPalette::foam().dark; }

QColor deep() { return PetPalette::abyss().dark; }

/// A triangle with rounded corners, its tip on the left in the body.
QPainterPath tailShape() {
  const double width = tail.width() / 2;
  const double height = tail.height() / 2;
  QPainterPath path;
  path.moveTo(-width, 0);
  path.quadTo(0, -height * 0.2, width * 0.45, -height * 0.92);
  path.quadTo(width * 0.8, -height, width * 0.85, -height * 0.6);
  path.quadTo(width * 0.55, 0, width * 0.85, height * 0.6);
  path.quadTo(width * 0.8, height, width * 0.45, height * 0.92);
  path.quadTo(0, height * 0.2, -width, 0);
  return path;
}

void paintTail(QPainter &painter, const QColor &tint, double wag) {
  painter.save();
  // The root in the body stays where it is while the tail swings.
  painter.translate(tailPlace - tail.width() / 2, 0);
  painter.rotate(tailDegrees + wag);
  painter.translate(tail.width() / 2, 0);
  painter.setBrush(faded(tint, tailOpacity));
  painter.drawPath(tailShape());
  painter.restore();
}

void paintTrunk(QPainter &painter, const QColor &tint) {
  QLinearGradient shade(0, -body.height() / 2, 0, body.height() / 2);
  shade.setColorAt(0, tint.lighter(lighter));
  shade.setColorAt(0.5, tint);
  shade.setColorAt(1, tint.darker(darker));
  painter.setBrush(shade);
  painter.drawEllipse(QPointF(0, 0), body.width() / 2, body.height() / 2);
  painter.setBrush(faded(pale(), bellyOpacity));
  painter.drawEllipse(bellyPlace, belly.width() / 2, belly.height() / 2);
}

void paintEye(QPainter &painter, double side, double open) {
  const double height = std::max(eyeSide * open, lid.height());
  const double width = lid.width() + (eyeSide - lid.width()) * open;
  const QPointF centre(side * eyePlace, 0);
  painter.setBrush(deep());
  const QRectF eye(centre - QPointF(width, height) / 2, QSizeF(width, height));
  painter.drawRoundedRect(eye, std::min(width, height) / 2, height / 2);
  if (height > pupilSide * 2) {
    painter.setBrush(pale());
    painter.drawEllipse(centre + pupilPlace * open, pupilSide / 2, pupilSide / 2);
  }
}

void paintSmile(QPainter &painter) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(faded(deep(), 0.75), 1.6, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(QRectF(-4.5, 1, 9, 8), 205 * 16, 130 * 16);
}

} // namespace

void enter(QPainter &painter, const QRectF &target) {
  const double scale = std::min(target.width() / frame.width(), target.height() / frame.height());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.translate(target.center());
  painter.scale(scale, scale);
}

void paintBody(QPainter &painter, const QColor &tint, const Pose &pose) {
  painter.save();
  painter.translate(0, pose.bob);
  painter.scale(1 / pose.breath, pose.breath);
  paintTail(painter, tint, pose.wag);
  paintTrunk(painter, tint);
  paintEye(painter, -1, pose.eyesOpen);
  paintEye(painter, 1, pose.eyesOpen);
  paintSmile(painter);
  painter.restore();
}

void paint(QPainter &painter, const QRectF &target, const QColor &tint) {
  painter.save();
  enter(painter, target);
  glow.paint(painter, {}, tint);
  paintBody(painter, tint, Pose{});
  painter.restore();
}

} // namespace morvo::MorvoSprite
