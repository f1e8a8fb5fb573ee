#include "panels/SymbolItem.h"

#include "panels/SymbolPainter.h"

namespace morvo {

SymbolItem::SymbolItem(QQuickItem *parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void SymbolItem::setName(const QString &name) {
  if (m_name != name) {
    m_name = name;
    update();
    Q_EMIT nameChanged();
  }
}

void SymbolItem::setColor(const QColor &color) {
  if (m_color != color) {
    m_color = color;
    update();
    Q_EMIT colorChanged();
  }
}

void SymbolItem::paint(QPainter *painter) {
  SymbolPainter::paint(*painter, m_name, boundingRect(), m_color);
}

} // namespace morvo
