#include "app/MenubarIcon.h"

#include <QPainter>
#include <QPixmap>

namespace morvo::MenubarIcon {
namespace {

/// In points, as is the icon's size.
constexpr double dotSize = 6;
constexpr int titleSize = 18;
/// Large enough for a screen of twice the density.
constexpr double titleScale = 2;
constexpr QColor dotColor{255, 59, 48};
const QString speciesMark = QStringLiteral("🐳");
const QString warningMark = QStringLiteral("❗");

} // namespace

QIcon overlayDot(const QIcon &icon) {
  QIcon dotted;
  for (const QSize &size : icon.availableSizes()) {
    QPixmap pixmap = icon.pixmap(size, 1.0);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dotColor);
    const double side = dotSize * size.width() / titleSize;
    painter.drawEllipse(QRectF(size.width() - side, 0, side, side));
    painter.end();
    dotted.addPixmap(pixmap);
  }
  return dotted;
}

QIcon title(bool pending) {
  QPixmap pixmap(QSize(titleSize, titleSize) * titleScale);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QFont font(QStringLiteral("Noto Color Emoji"));
  font.setPixelSize(static_cast<int>(pending ? titleSize : titleSize * titleScale * 0.8));
  painter.setFont(font);
  painter.drawText(pixmap.rect(), Qt::AlignCenter,
                   pending ? speciesMark + warningMark : speciesMark);
  painter.end();
  return {pixmap};
}

} // namespace morvo::MenubarIcon
