#include "panels/SceneGrid.h"

#include <QPainter>

#include <algorithm>

namespace morvo::test {
namespace {

/// Of 255, in any of the three colours. The grounds of cards differ from the panel's by as little
/// as 10.
constexpr int tolerance = 7;
/// More is tolerated where the neighbours differ by this many times as much: amid letters.
constexpr int liveliness = 4;

/// How far the pixel lies outside of what is tolerated by the neighbours of that place.
int beyond(QRgb pixel, const QImage &image, int x, int y) {
  int lowest[3] = {255, 255, 255};
  int highest[3] = {0, 0, 0};
  for (int row = std::max(0, y - 1); row <= std::min(image.height() - 1, y + 1); ++row) {
    for (int column = std::max(0, x - 1); column <= std::min(image.width() - 1, x + 1); ++column) {
      const QRgb near = image.pixel(column, row);
      const int parts[3] = {qRed(near), qGreen(near), qBlue(near)};
      for (int part = 0; part < 3; ++part) {
        lowest[part] = std::min(lowest[part], parts[part]);
        highest[part] = std::max(highest[part], parts[part]);
      }
    }
  }
  const int own[3] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
  int farthest = 0;
  for (int part = 0; part < 3; ++part) {
    const int tolerated = tolerance + (highest[part] - lowest[part]) / liveliness;
    farthest = std::max(
        {farthest, lowest[part] - own[part] - tolerated, own[part] - highest[part] - tolerated});
  }
  return farthest;
}

int strangersIn(const QImage &mine, const QImage &theirs) {
  int count = 0;
  for (int y = 0; y < mine.height(); ++y) {
    for (int x = 0; x < mine.width(); ++x) {
      count += beyond(mine.pixel(x, y), theirs, x, y) > 0 ? 1 : 0;
    }
  }
  return count;
}

} // namespace

SceneGrid::SceneGrid(const QImage &cells) : m_cells(cells.convertToFormat(QImage::Format_RGB32)) {}

SceneGrid SceneGrid::of(const QImage &picture) {
  // What is transparent counts as white, whatever colour stands there.
  QImage opaque(picture.size(), QImage::Format_RGB32);
  opaque.fill(Qt::white);
  QPainter painter(&opaque);
  QImage bare = picture;
  bare.setDevicePixelRatio(1);
  painter.drawImage(0, 0, bare);
  painter.end();
  const QSizeF points = picture.deviceIndependentSize();
  return SceneGrid(
      opaque.scaled((points / side).toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

int SceneGrid::strangers(const SceneGrid &other) const {
  if (m_cells.size() != other.m_cells.size()) {
    return m_cells.width() * m_cells.height();
  }
  // What is missing shows from the other side.
  return strangersIn(m_cells, other.m_cells) + strangersIn(other.m_cells, m_cells);
}

} // namespace morvo::test
