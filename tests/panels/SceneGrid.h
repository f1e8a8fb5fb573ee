#pragma once

#include <QImage>

namespace morvo::test {

/// A picture of the panel in cells of `side` points, each of one colour: coarse enough to be the
/// same for one and two pixels a point and for other edges of letters, fine enough to show whether
/// something is missing or stands elsewhere.
class SceneGrid {
public:
  static constexpr int side = 4;

  /// Reduces a picture; its device pixel ratio tells its points.
  [[nodiscard]] static SceneGrid of(const QImage &picture);
  /// From what `image` gave. Null when it is none.
  [[nodiscard]] static SceneGrid stored(const QImage &image) { return SceneGrid(image); }

  /// One pixel a cell.
  [[nodiscard]] const QImage &image() const { return m_cells; }
  /// Cells that look like none of the other's around the same place; every cell when the sizes
  /// differ.
  [[nodiscard]] int strangers(const SceneGrid &other) const;

private:
  explicit SceneGrid(const QImage &cells);

  QImage m_cells;
};

} // namespace morvo::test
