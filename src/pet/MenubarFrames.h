#pragma once

#include "pet/PetFiles.h"

#include <QHash>
#include <QImage>
#include <QRectF>

#include <stop_token>
#include <vector>

namespace morvo {

/// The pet as a small icon of 13 coarse cells a side, as a few frames to be shown in turn. Main
/// thread.
class MenubarFrames {
public:
  explicit MenubarFrames(PetFiles files);

  /// The icons of the persona's "idle", `px` points a side, for this device pixel ratio; empty when
  /// it has no frames. Icons once made are kept for good, whatever size is asked for later.
  [[nodiscard]] std::vector<QImage> idle(const QString &personaId, int px, double devicePixelRatio);
  /// The same, empty where frames would have to be decoded for them.
  [[nodiscard]] std::vector<QImage> ready(const QString &personaId, int px,
                                          double devicePixelRatio);
  /// Makes icons of cells, and keeps them.
  std::vector<QImage> keep(const QString &personaId, const std::vector<QImage> &cells, int px,
                           double devicePixelRatio);

  /// The files of the persona's "idle", in playing order.
  [[nodiscard]] QStringList frameURLs(const QString &personaId) const;
  /// Every how manieth of `count` frames becomes an icon.
  [[nodiscard]] static qsizetype step(qsizetype count);
  /// The content in `bbox` with a little air, reduced to `grid` cells on its longer side and drawn
  /// as hard blocks, centred in `px` points.
  [[nodiscard]] static QImage cropAndFit(const QImage &image, const QRectF &bbox, int px, int grid,
                                         double devicePixelRatio);

  /// The icons' cells, one pixel each, made from the frames by decoding them. Frames that together
  /// are too large to be decoded soon become fewer icons. Empty when asked to stop. On any thread
  /// where the object is that thread's own; a copy will do.
  [[nodiscard]] std::vector<QImage> cells(const QString &personaId,
                                          const std::stop_token &stop = {}) const;
  /// Where the build leaves the cells of a built-in pet as 0.png, 1.png, …, so that no start of the
  /// program decodes the frames for them. Used while no "idle" of the user's takes its place.
  [[nodiscard]] static QString bakedFolder(const PetFiles &files, const QString &personaId);

private:
  [[nodiscard]] std::vector<QImage> bakedCells(const QString &personaId) const;
  [[nodiscard]] static QImage reduced(const QImage &image, const QRectF &bbox, int grid);
  [[nodiscard]] static QImage fit(const QImage &cells, int px, double devicePixelRatio);

  PetFiles m_files;
  QHash<QString, std::vector<QImage>> m_icons;
};

} // namespace morvo
