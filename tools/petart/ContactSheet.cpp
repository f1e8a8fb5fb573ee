#include "ContactSheet.h"

#include "Choreography.h"
#include "Creature.h"

#include <QPainter>

#include <array>

namespace morvo::ContactSheet {
namespace {

constexpr int columns = 10;
constexpr int cell = 160;
constexpr int icon = 18;

QColor ground(int column) {
  constexpr std::array<QRgb, 3> grounds{0xffffffff, 0xff000000, 0xff7d8a99};
  return {grounds.at(static_cast<std::size_t>(column) % grounds.size())};
}

QImage scaled(const QImage &frame, int side) {
  return frame.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QImage picture() {
  const auto sets = Choreography::frameSets();
  const int rows = static_cast<int>(sets.size());
  QImage sheet(columns * cell, rows * cell + 3 * icon, QImage::Format_RGB32);
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  for (int row = 0; row < rows; ++row) {
    const auto &set = sets[static_cast<std::size_t>(row)];
    for (int column = 0; column < columns; ++column) {
      const QImage frame =
          Creature::picture(Choreography::poseAt(set, column * (set.frames - 1) / (columns - 1)));
      const QPoint corner(column * cell, row * cell);
      painter.fillRect(QRect(corner, QSize(cell, cell)), ground(column));
      painter.drawImage(corner, scaled(frame, cell));
      const QRect small((row * columns + column) * icon, rows * cell + icon, icon, icon);
      painter.fillRect(small, ground(column));
      painter.drawImage(small.topLeft(), scaled(frame, icon));
    }
  }
  return sheet;
}

} // namespace morvo::ContactSheet
