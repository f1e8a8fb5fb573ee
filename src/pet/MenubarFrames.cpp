#include "pet/MenubarFrames.h"

#include "pet/AlphaBounds.h"
#include "pet/FrameFile.h"
#include "pet/FrameSetName.h"
#include "pet/MorvoSprites.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace morvo {
namespace {

constexpr int contentScanSide = 100;
constexpr int gridCells = 13;
/// Long sequences are thinned to about this many icons.
constexpr qsizetype fewestThinned = 12;
/// Frames are kept no larger than this while their cells are made; it is the side of the canvas on
/// which pets are baked.
constexpr int mostSide = 512;
/// From larger ones only so many pixels are looked at.
constexpr int mostSmoothSide = 4 * mostSide;
/// Pixels that are decoded for the icons of one pet: a hundred frames of the usual canvas, or one
/// of the largest that are opened at all. More would hold up the start for seconds.
constexpr qint64 mostPixels = FrameFile::mostBytes / 4;
/// Air around the content, in fractions of the frame.
constexpr double air = 0.06;

/// The part of the image to show, in pixels.
QRect cropOf(const QImage &image, const QRectF &bbox) {
  const double left = std::max(bbox.left() - air, 0.0);
  const double top = std::max(bbox.top() - air, 0.0);
  const double width = std::min(bbox.width() + 2 * air, 1 - left);
  const double height = std::min(bbox.height() + 2 * air, 1 - top);
  return QRectF(left * image.width(), top * image.height(), width * image.width(),
                height * image.height())
      .toAlignedRect()
      .intersected(image.rect());
}

qint64 pixelsOf(const SpriteFrame &frame) {
  return static_cast<qint64>(frame.size.width() * frame.size.height());
}

/// Every so manieth of the frames that their pixels stay within `mostPixels`, and none beyond.
std::vector<SpriteFrame> affordable(const std::vector<SpriteFrame> &frames) {
  qint64 pixels = 0;
  for (const auto &frame : frames) {
    pixels += pixelsOf(frame);
  }
  const auto each = static_cast<std::size_t>(std::max<qint64>((pixels - 1) / mostPixels + 1, 1));
  std::vector<SpriteFrame> kept;
  qint64 left = mostPixels;
  for (std::size_t index = 0; index < frames.size(); index += each) {
    const auto &frame = frames.at(index);
    if (pixelsOf(frame) <= left) {
      left -= pixelsOf(frame);
      kept.push_back(frame);
    }
  }
  return kept;
}

/// A frame no larger than it takes to tell its cells; null when it cannot be decoded.
QImage decoded(const SpriteFrame &frame) {
  QImage image = FrameFile::decode(frame.path);
  if (std::max(image.width(), image.height()) > mostSmoothSide) {
    // Smoothing makes a copy of all pixels first.
    image = image.scaled(mostSmoothSide, mostSmoothSide, Qt::KeepAspectRatio);
  }
  if (std::max(image.width(), image.height()) <= mostSide) {
    return image;
  }
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
      .scaled(mostSide, mostSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

MenubarFrames::MenubarFrames(PetFiles files) : m_files(std::move(files)) {}

QStringList MenubarFrames::frameURLs(const QString &personaId) const {
  if (const auto files = MorvoSprites::userPNGs(m_files, personaId, FrameSetName::idle)) {
    return MorvoSprites::sortFrameURLs(*files);
  }
  if (!PetFiles::isPlainName(personaId)) {
    return {};
  }
  const QString builtIn = m_files.resourceDirectory(personaId) + u'/' + FrameSetName::idle;
  return MorvoSprites::sortFrameURLs(MorvoSprites::diskPNGs(builtIn).value_or(QStringList()));
}

qsizetype MenubarFrames::step(qsizetype count) {
  return count >= fewestThinned ? count / fewestThinned : 1;
}

std::vector<QImage> MenubarFrames::idle(const QString &personaId, int px, double devicePixelRatio) {
  auto icons = ready(personaId, px, devicePixelRatio);
  return icons.empty() ? keep(personaId, cells(personaId), px, devicePixelRatio) : icons;
}

std::vector<QImage> MenubarFrames::ready(const QString &personaId, int px,
                                         double devicePixelRatio) {
  const auto known = m_icons.constFind(personaId);
  return known != m_icons.constEnd() ? *known
                                     : keep(personaId, bakedCells(personaId), px, devicePixelRatio);
}

std::vector<QImage> MenubarFrames::keep(const QString &personaId, const std::vector<QImage> &cells,
                                        int px, double devicePixelRatio) {
  std::vector<QImage> icons;
  std::ranges::transform(cells, std::back_inserter(icons),
                         [&](const QImage &image) { return fit(image, px, devicePixelRatio); });
  if (!icons.empty()) {
    m_icons.insert(personaId, icons);
  }
  return icons;
}

std::vector<QImage> MenubarFrames::cells(const QString &personaId,
                                         const std::stop_token &stop) const {
  const QStringList files = frameURLs(personaId);
  std::vector<SpriteFrame> frames;
  for (qsizetype index = 0; index < files.size(); index += step(files.size())) {
    // The probe also keeps from opening what is no regular file.
    if (auto frame = FrameFile::probe(files.at(index))) {
      frames.push_back(std::move(*frame));
    }
  }
  std::vector<QImage> images;
  std::optional<QRectF> bbox;
  for (const auto &frame : affordable(frames)) {
    if (stop.stop_requested()) {
      return {};
    }
    // One at a time: what is kept of each is small.
    QImage image = decoded(frame);
    if (!image.isNull()) {
      bbox = AlphaBounds::united(bbox, AlphaBounds::normalised(image, contentScanSide));
      images.push_back(std::move(image));
    }
  }
  for (QImage &image : images) {
    image = reduced(image, bbox.value_or(QRectF(0, 0, 1, 1)), gridCells);
  }
  return images;
}

QString MenubarFrames::bakedFolder(const PetFiles &files, const QString &personaId) {
  return files.resources + QStringLiteral("/menubar/") + personaId;
}

std::vector<QImage> MenubarFrames::bakedCells(const QString &personaId) const {
  if (!PetFiles::isPlainName(personaId) ||
      MorvoSprites::hasUserPNGs(m_files, personaId, FrameSetName::idle)) {
    return {};
  }
  const auto files = MorvoSprites::diskPNGs(bakedFolder(m_files, personaId));
  std::vector<QImage> images;
  for (const QString &file : MorvoSprites::sortFrameURLs(files.value_or(QStringList()))) {
    QImage image = FrameFile::decode(file).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
      return {};
    }
    images.push_back(std::move(image));
  }
  return images;
}

QImage MenubarFrames::reduced(const QImage &image, const QRectF &bbox, int grid) {
  const QRect crop = cropOf(image, bbox);
  const QImage cropped = crop.isEmpty() ? image : image.copy(crop);
  const double reduction = std::min(static_cast<double>(grid) / cropped.width(),
                                    static_cast<double>(grid) / cropped.height());
  const QSize cells(std::max(qRound(reduction * cropped.width()), 1),
                    std::max(qRound(reduction * cropped.height()), 1));
  return cropped.convertToFormat(QImage::Format_ARGB32_Premultiplied)
      .scaled(cells, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage MenubarFrames::fit(const QImage &cells, int px, double devicePixelRatio) {
  const int side = qRound(px * devicePixelRatio);
  QImage icon(side, side, QImage::Format_ARGB32_Premultiplied);
  icon.fill(Qt::transparent);
  const double cell = std::min(static_cast<double>(side) / cells.width(),
                               static_cast<double>(side) / cells.height());
  const QSizeF drawn = QSizeF(cells.size()) * cell;
  QPainter painter(&icon);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
  painter.drawImage(QRectF(QPointF((side - drawn.width()) / 2, (side - drawn.height()) / 2), drawn),
                    cells);
  painter.end();
  icon.setDevicePixelRatio(devicePixelRatio);
  return icon;
}

QImage MenubarFrames::cropAndFit(const QImage &image, const QRectF &bbox, int px, int grid,
                                 double devicePixelRatio) {
  return fit(reduced(image, bbox, grid), px, devicePixelRatio);
}

} // namespace morvo
