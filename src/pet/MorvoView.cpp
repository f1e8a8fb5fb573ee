#include "pet/MorvoView.h"

#include <QPainter>
#include <QPainterPath>

namespace morvo::MorvoView {
namespace {

constexpr QSizeF frame(130, 120);
const QColor themeBlue(0x4d, 0xc3, 0xff);
const QColor drowsyBlue(0x5b, 0x8d, 0xef);
const QColor hungryOrange(0xff, 0x9f, 0x5a);
const QColor white(0xff, 0xff, 0xff);
const QColor deepSea(0x0b, 0x1c, 0x33);

constexpr double glowOpacity = 0.3;
constexpr double tailOpacity = 0.9;
constexpr double bellyOpacity = 0.22;
constexpr double tailDegrees = 8;

QColor faded(QColor color, double opacity) {
  color.setAlphaF(static_cast<float>(opacity));
  return color;
}

/// A blurred disc, as a gradient that dies away.
void drawGlow(QPainter &painter, const QColor &tint) {
  constexpr double radius = 60;
  QRadialGradient glow(QPointF(0, 0), radius);
  glow.setColorAt(0, faded(tint, glowOpacity));
  glow.setColorAt(0.6, faded(tint, glowOpacity * 0.7));
  glow.setColorAt(1, faded(tint, 0));
  painter.setBrush(glow);
  painter.drawEllipse(QPointF(0, 0), radius, radius);
}

void drawTail(QPainter &painter, const QColor &tint) {
  constexpr double width = 30;
  constexpr double height = 34;
  painter.save();
  painter.translate(50, 0);
  painter.rotate(tailDegrees);
  QPainterPath tail;
  tail.moveTo(-width / 2, 0);
  tail.quadTo(0, -height * 0.1, width / 2, -height / 2);
  tail.quadTo(width * 0.3, 0, width / 2, height / 2);
  tail.quadTo(0, height * 0.1, -width / 2, 0);
  painter.setBrush(faded(tint, tailOpacity));
  painter.drawPath(tail);
  painter.restore();
}

void drawBody(QPainter &painter, const QColor &tint) {
  QLinearGradient body(0, -31, 0, 31);
  body.setColorAt(0, tint.lighter(125));
  body.setColorAt(1, tint.darker(130));
  painter.setBrush(body);
  painter.drawEllipse(QPointF(0, 0), 50, 31);
  painter.setBrush(faded(white, bellyOpacity));
  painter.drawEllipse(QPointF(-6, 14), 31, 12);
}

void drawFace(QPainter &painter) {
  constexpr double eyeRadius = 5;
  constexpr double pupilRadius = 1.6;
  painter.setBrush(deepSea);
  painter.drawEllipse(QPointF(-26, -6), eyeRadius, eyeRadius);
  painter.setBrush(white);
  painter.drawEllipse(QPointF(-27.4, -7.6), pupilRadius, pupilRadius);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(faded(deepSea, 0.55), 1.6, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(QRectF(-44, -2, 12, 10), 200 * 16, 120 * 16);
}

} // namespace

QImage picture(const QColor &accent, double scale) {
  QImage image((frame * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.scale(scale, scale);
  painter.translate(frame.width() / 2, frame.height() / 2);
  drawGlow(painter, accent);
  drawTail(painter, accent);
  drawBody(painter, accent);
  drawFace(painter);
  return image;
}

QColor accent(const QString &mood) {
  if (mood == u"hungry") {
    return hungryOrange;
  }
  const bool drowsy = mood == u"lonely" || mood == u"sleepy" || mood == u"dreamy";
  return drowsy ? drowsyBlue : themeBlue;
}

} // namespace morvo::MorvoView
