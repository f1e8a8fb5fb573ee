#include "panels/SymbolPainter.h"

#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace morvo::SymbolPainter {
namespace {

/// The square that the drawings are made in.
constexpr double side = 24;
constexpr double lineWidth = 1.8;

using Draw = void (*)(QPainter &painter, const QColor &color);

QPainterPath bubble(const QRectF &body, QPointF tip) {
  QPainterPath path;
  path.addRoundedRect(body, 3.6, 3.6);
  QPainterPath tail;
  const double towards = tip.x() < body.center().x() ? 1 : -1;
  tail.addPolygon(
      QPolygonF({tip, {tip.x(), body.bottom() - 3}, {tip.x() + towards * 5, body.bottom() - 0.4}}));
  tail.closeSubpath();
  return path.united(tail);
}

void bubbles(QPainter &painter, const QColor & /*color*/) {
  const QPainterPath front = bubble({8.5, 9.5, 13, 9}, {18.5, 21.5});
  QPainterPath back = bubble({2.5, 3.5, 14, 9}, {5.5, 15.8});
  QPainterPathStroker gap;
  gap.setWidth(3.6);
  back = back.subtracted(front.united(gap.createStroke(front)));
  painter.drawPath(front);
  painter.drawPath(back);
}

void fillPath(QPainter &painter, const QPainterPath &path, const QColor &color) {
  painter.fillPath(path, color);
}

void bars(QPainter &painter, const QColor &color) {
  QPainterPath path;
  path.addRoundedRect({3.5, 12, 4.4, 8.5}, 1.2, 1.2);
  path.addRoundedRect({9.8, 4, 4.4, 16.5}, 1.2, 1.2);
  path.addRoundedRect({16.1, 8, 4.4, 12.5}, 1.2, 1.2);
  fillPath(painter, path, color);
}

void paw(QPainter &painter, const QColor &color) {
  QPainterPath path;
  path.addEllipse(QPointF(5, 11.2), 2, 2.6);
  path.addEllipse(QPointF(9.6, 6.6), 2.1, 2.9);
  path.addEllipse(QPointF(14.6, 6.6), 2.1, 2.9);
  path.addEllipse(QPointF(19.1, 11.2), 2, 2.6);
  QPainterPath pad(QPointF(12.1, 11));
  pad.cubicTo({15, 11}, {15.4, 13.6}, {17, 15.2});
  pad.cubicTo({19.4, 17.4}, {17.6, 20.6}, {14.6, 20});
  pad.cubicTo({13, 19.6}, {11.2, 19.6}, {9.6, 20});
  pad.cubicTo({6.6, 20.6}, {4.8, 17.4}, {7.1, 15.2});
  pad.cubicTo({8.7, 13.6}, {9.2, 11}, {12.1, 11});
  path.addPath(pad);
  fillPath(painter, path, color);
}

void gear(QPainter &painter, const QColor & /*color*/) {
  constexpr int teeth = 8;
  constexpr double outer = 9.6;
  constexpr double inner = 7.2;
  QPolygonF outline;
  for (int tooth = 0; tooth < teeth; ++tooth) {
    constexpr std::array corners{std::pair{-0.32, inner}, std::pair{-0.2, outer},
                                 std::pair{0.2, outer}, std::pair{0.32, inner}};
    for (const auto &[turn, radius] : corners) {
      const double angle = (tooth + turn) * 2 * std::numbers::pi / teeth;
      outline << QPointF(12 + radius * std::sin(angle), 12 - radius * std::cos(angle));
    }
  }
  QPainterPath path;
  path.addPolygon(outline);
  path.closeSubpath();
  painter.drawPath(path);
  painter.drawEllipse(QPointF(12, 12), 3.1, 3.1);
}

QPainterPath shield() {
  QPainterPath path(QPointF(12, 2.4));
  path.cubicTo({14.6, 4.4}, {17.4, 5.2}, {20, 5.4});
  path.lineTo(20, 11.4);
  path.cubicTo({20, 16.6}, {16.6, 20}, {12, 21.8});
  path.cubicTo({7.4, 20}, {4, 16.6}, {4, 11.4});
  path.lineTo(4, 5.4);
  path.cubicTo({6.6, 5.2}, {9.4, 4.4}, {12, 2.4});
  path.closeSubpath();
  return path;
}

void warningShield(QPainter &painter, const QColor &color) {
  QPainterPath mark;
  mark.addRoundedRect({10.9, 7, 2.2, 7}, 1.1, 1.1);
  mark.addEllipse(QPointF(12, 16.6), 1.35, 1.35);
  fillPath(painter, shield().subtracted(mark), color);
}

void halfShield(QPainter &painter, const QColor &color) {
  painter.drawPath(shield());
  QPainterPath left;
  left.addRect(0, 0, 12, side);
  fillPath(painter, shield().intersected(left), color);
}

void arrowUp(QPainter &painter, const QColor &color) {
  QPainterPath disc;
  disc.addEllipse(QPointF(12, 12), 11, 11);
  QPainterPath arrow(QPointF(12, 17));
  arrow.lineTo(12, 7.6);
  arrow.moveTo(7.8, 11.6);
  arrow.lineTo(12, 7.4);
  arrow.lineTo(16.2, 11.6);
  QPainterPathStroker stroker(QPen(color, 2.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  fillPath(painter, disc.subtracted(stroker.createStroke(arrow)), color);
}

void masks(QPainter &painter, const QColor & /*color*/) {
  QPainterPath face(QPointF(4, 4.6));
  face.cubicTo({9, 6.4}, {15, 6.4}, {20, 4.6});
  face.lineTo(20, 11);
  face.cubicTo({20, 16.6}, {16, 20.4}, {12, 20.4});
  face.cubicTo({8, 20.4}, {4, 16.6}, {4, 11});
  face.closeSubpath();
  painter.drawPath(face);
  painter.drawLine(QPointF(7.6, 10.6), QPointF(10, 10.6));
  painter.drawLine(QPointF(14, 10.6), QPointF(16.4, 10.6));
  QPainterPath smile(QPointF(8.4, 14.4));
  smile.cubicTo({10, 17}, {14, 17}, {15.6, 14.4});
  painter.drawPath(smile);
}

void pencil(QPainter &painter, const QColor & /*color*/) {
  painter.drawPolygon(QPolygonF({{4, 20}, {5, 15.6}, {15.8, 4.8}, {19.2, 8.2}, {8.4, 19}}));
  painter.drawLine(QPointF(13.4, 7.2), QPointF(16.8, 10.6));
}

void trash(QPainter &painter, const QColor & /*color*/) {
  painter.drawLine(QPointF(4, 6.6), QPointF(20, 6.6));
  painter.drawPolyline(QPolygonF({{9, 6.4}, {9.6, 3.8}, {14.4, 3.8}, {15, 6.4}}));
  painter.drawPolyline(QPolygonF({{6, 6.8}, {7, 20.4}, {17, 20.4}, {18, 6.8}}));
  painter.drawLine(QPointF(10.2, 10.4), QPointF(10.4, 16.8));
  painter.drawLine(QPointF(13.8, 10.4), QPointF(13.6, 16.8));
}

void turn(QPainter &painter, const QColor & /*color*/) {
  constexpr int sixteenths = 16;
  painter.drawArc(QRectF(4.4, 4.4, 15.2, 15.2), 50 * sixteenths, 290 * sixteenths);
  painter.drawPolyline(QPolygonF({{18.2, 2.6}, {17.6, 7}, {13.4, 6.6}}));
}

void chevronDown(QPainter &painter, const QColor & /*color*/) {
  painter.drawPolyline(QPolygonF({{6.5, 9.5}, {12, 15}, {17.5, 9.5}}));
}

struct Symbol {
  QStringView name;
  Draw draw;
};

constexpr std::array symbols{
    Symbol{u"bubble.left.and.bubble.right", bubbles},
    Symbol{u"chart.bar", bars},
    Symbol{u"pawprint", paw},
    Symbol{u"gearshape", gear},
    Symbol{u"exclamationmark.shield.fill", warningShield},
    Symbol{u"shield.lefthalf.filled", halfShield},
    Symbol{u"arrow.up.circle.fill", arrowUp},
    Symbol{u"theatermasks", masks},
    Symbol{u"pencil", pencil},
    Symbol{u"trash", trash},
    Symbol{u"arrow.clockwise", turn},
    Symbol{u"chevron.down", chevronDown},
};

} // namespace

bool knows(const QString &name) {
  return std::ranges::find(symbols, QStringView(name), &Symbol::name) != symbols.end();
}

void paint(QPainter &painter, const QString &name, const QRectF &target, const QColor &color) {
  const auto *const found = std::ranges::find(symbols, QStringView(name), &Symbol::name);
  if (found == symbols.end()) {
    return;
  }
  const double scale = std::min(target.width(), target.height()) / side;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(target.center());
  painter.scale(scale, scale);
  painter.translate(-side / 2, -side / 2);
  painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  found->draw(painter, color);
  painter.restore();
}

} // namespace morvo::SymbolPainter
