#include "Sheet.h"

#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <array>

namespace morvo::Sheet {
namespace {

constexpr int columns = 12;
constexpr int cell = 160;
constexpr int large = 480;
/// Cells of the tray's icon and the points it is drawn at, here enlarged to be judged.
constexpr int trayCells = 13;
constexpr int trayEnlarged = 78;
constexpr int stripColumns = 12;
constexpr int stripCell = 128;

/// The three grounds that a desktop may give: white, black, and a wallpaper full of detail.
void paintGround(QPainter &painter, const QRect &rect, int index) {
  constexpr int kinds = 3;
  if (index % kinds != 2) {
    painter.fillRect(rect, index % kinds == 0 ? Qt::white : Qt::black);
    return;
  }
  painter.save();
  painter.setClipRect(rect);
  QLinearGradient sky(rect.topLeft(), rect.bottomRight());
  sky.setColorAt(0, QColor(0xfff2b36b));
  sky.setColorAt(0.5, QColor(0xff5a8f5a));
  sky.setColorAt(1, QColor(0xff26456e));
  painter.fillRect(rect, sky);
  QRandomGenerator chance(7);
  painter.setPen(Qt::NoPen);
  for (int spot = 0; spot < 60; ++spot) {
    painter.setBrush(QColor::fromHsv(chance.bounded(360), 160, 80 + chance.bounded(170), 150));
    const QPoint at(rect.left() + chance.bounded(rect.width()),
                    rect.top() + chance.bounded(rect.height()));
    painter.drawEllipse(at, 3 + chance.bounded(rect.width() / 10), 3 + chance.bounded(18));
  }
  painter.restore();
}

QImage scaled(const QImage &frame, int side) {
  return frame.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// The middle of the set's frames that fall to this column.
int frameOf(const FrameSet &set, int column, int count) {
  return std::min(set.frames - 1, column * (set.frames - 1) / std::max(count - 1, 1));
}

void paintTray(QPainter &painter, const PetArt &pet, int top) {
  const FrameSet &idle = pet.frameSets().front();
  for (int column = 0; column < columns; ++column) {
    const QImage frame = pet.picture(idle, frameOf(idle, column, columns));
    const QRect place(column * (trayEnlarged + 12) + 6, top + 6, trayEnlarged, trayEnlarged);
    paintGround(painter, place.adjusted(-6, -6, 6, 6), column);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(place, scaled(frame, trayCells));
    const QRect real(columns * (trayEnlarged + 12) + 24 * column, top + 6, 24, 24);
    paintGround(painter, real, column);
    painter.drawImage(real.topLeft() + QPoint(3, 3),
                      scaled(frame, trayCells).scaled(18, 18, Qt::KeepAspectRatio));
  }
}

} // namespace

QImage contact(const PetArt &pet) {
  const auto sets = pet.frameSets();
  const int rows = static_cast<int>(sets.size());
  const int trayTop = rows * cell;
  const int largeTop = trayTop + trayEnlarged + 12;
  QImage sheet(columns * cell, largeTop + large, QImage::Format_RGB32);
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  for (int row = 0; row < rows; ++row) {
    const FrameSet &set = sets[static_cast<std::size_t>(row)];
    for (int column = 0; column < columns; ++column) {
      const QRect place(column * cell, row * cell, cell, cell);
      paintGround(painter, place, column);
      painter.drawImage(place.topLeft(),
                        scaled(pet.picture(set, frameOf(set, column, columns)), cell));
    }
  }
  paintTray(painter, pet, trayTop);
  for (int column = 0; column < columns * cell / large; ++column) {
    const QRect place(column * large, largeTop, large, large);
    paintGround(painter, place, column);
    const FrameSet &set = sets[static_cast<std::size_t>(column) % sets.size()];
    painter.drawImage(place.topLeft(), scaled(pet.picture(set, set.frames / 3), large));
  }
  return sheet;
}

QImage strip(const PetArt &pet, const FrameSet &set) {
  const int rows = (set.frames + stripColumns - 1) / stripColumns;
  QImage sheet(stripColumns * stripCell, rows * stripCell, QImage::Format_RGB32);
  sheet.fill(QColor(0xffdfe6ec));
  QPainter painter(&sheet);
  for (int frame = 0; frame < set.frames; ++frame) {
    const QPoint corner((frame % stripColumns) * stripCell, (frame / stripColumns) * stripCell);
    const int base = corner.y() + static_cast<int>(baseLine * stripCell / canvasSide);
    painter.setPen(QColor(0xff9fb0bf));
    painter.drawLine(corner.x(), base, corner.x() + stripCell, base);
    painter.drawRect(QRect(corner, QSize(stripCell, stripCell)));
    painter.drawImage(corner, scaled(pet.picture(set, frame), stripCell));
    painter.setPen(QColor(0xff566573));
    painter.drawText(corner + QPoint(4, 14), QString::number(frame));
  }
  return sheet;
}

} // namespace morvo::Sheet
