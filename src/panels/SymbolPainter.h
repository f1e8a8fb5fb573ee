#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

/// The panel's symbols as drawings, by their names. Sharp at every size.
namespace morvo::SymbolPainter {

/// Whether there is a drawing of that name.
[[nodiscard]] bool knows(const QString &name);
/// Draws the symbol into the square in the middle of `target`; an unknown name draws nothing.
void paint(QPainter &painter, const QString &name, const QRectF &target, const QColor &color);

} // namespace morvo::SymbolPainter
