#include "pet/ScenePainter.h"

#include "pet/AlphaBounds.h"
#include "pet/FrameFile.h"
#include "pet/PackedPicture.h"

#include <QFont>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace morvo {
namespace {

double degrees(double radians) { return radians * 180 / std::numbers::pi; }

QSize rounded(QSizeF size) {
  return {std::max(qRound(size.width()), 1), std::max(qRound(size.height()), 1)};
}

QImage premultiplied(QImage image) {
  return std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// The part of `picture` that the frame shows.
QImage cropped(const QImage &picture, const SpriteFrame &frame) {
  const QRectF crop(frame.crop.x() * picture.width(), frame.crop.y() * picture.height(),
                    frame.crop.width() * picture.width(), frame.crop.height() * picture.height());
  const QRect pixels = crop.toRect();
  return pixels == picture.rect() ? picture : picture.copy(pixels);
}

/// A frame shown no smaller than this is kept as it was read: drawing it, which turns it anyway,
/// reduces it as well, and it keeps the few colours of a drawn frame, which pack well.
constexpr double leastReduction = 0.9;

bool isReduced(QSize size, QSize to, double least) {
  return to.width() < least * size.width() || to.height() < least * size.height();
}

/// Rows of the device that are drawn at once. Qt gives a transformed picture of a hundred rows or
/// more to a pool of threads, and waking them costs more than drawing that much.
constexpr int mostRows = 64;

/// `area`, in the painter's coordinates, cut at whole rows of its device.
std::vector<QRectF> bands(const QPainter &painter, const QRectF &area) {
  const QTransform toDevice = painter.deviceTransform();
  if (toDevice.type() > QTransform::TxScale || toDevice.m22() <= 0) {
    return {area};
  }
  const QRectF onDevice = toDevice.mapRect(area);
  const int end = static_cast<int>(std::ceil(onDevice.bottom())) + 1;
  std::vector<QRectF> parts;
  for (int top = static_cast<int>(std::floor(onDevice.top())) - 1; top < end; top += mostRows) {
    const QRectF rows(std::floor(onDevice.left()) - 1, top, std::ceil(onDevice.width()) + 3,
                      std::min(mostRows, end - top));
    parts.push_back(toDevice.inverted().mapRect(rows));
  }
  return parts;
}

} // namespace

/// A frame ready to be drawn.
struct ScenePainter::Prepared {
  SpriteFrame frame;
  QSize wanted; ///< Pixels of the whole frame on the screen when it was prepared.
  bool readable = true;
  QImage image; ///< Without its transparent margin; null when nothing is to be drawn, or packed.
  PackedPicture packed; ///< The image, when it is kept so.
  QRectF part; ///< What `image` covers, in fractions of the frame from its top left corner.
  bool smooth = true;
  int strongestAlpha = 0; ///< Of the pixels in `image`, 0 to 255.

  [[nodiscard]] Budget bytes() const {
    return {.pictures = image.sizeInBytes(), .packed = packed.bytes()};
  }
};

/// The prepared frames of one folder.
struct ScenePainter::FrameSet {
  QString folder;
  std::vector<Prepared> frames;
};

/// A node to be drawn, with all that its parents do to it.
struct ScenePainter::Item {
  const Node *node;
  QTransform transform;
  double alpha;
  double z;
};

ScenePainter::ScenePainter(Budget budget) : m_budget(budget) {}

ScenePainter::~ScenePainter() = default;

void ScenePainter::forgetFrames() {
  m_sets.clear();
  m_kept = {};
  m_shown.clear();
}

void ScenePainter::paint(QPainter &painter, const PetScene &scene, const QRectF &target,
                         double devicePixelRatio) {
  if (scene.size().isEmpty() || target.isEmpty()) {
    return;
  }
  const double scale =
      std::min(target.width() / scene.size().width(), target.height() / scene.size().height());
  QTransform base;
  base.translate(target.center().x() - scene.size().width() * scale / 2,
                 target.center().y() + scene.size().height() * scale / 2);
  base.scale(scale, scale);
  std::vector<Item> items;
  collect(scene.root(), base, 1, 0, items);
  std::ranges::stable_sort(items, {}, &Item::z);
  m_strongestAlpha = 0;
  for (const Item &item : items) {
    if (const Prepared *picture = pictureOf(item, scale * devicePixelRatio)) {
      drawSprite(painter, item, *picture);
      m_strongestAlpha = std::max(m_strongestAlpha, picture->strongestAlpha * item.alpha);
    }
    drawLabel(painter, item);
  }
  std::erase_if(m_shown, [&](const auto &shown) {
    return std::ranges::find(items, shown.first, &Item::node) == items.end();
  });
}

void ScenePainter::collect(const Node &node, const QTransform &parent, double alpha, double z,
                           std::vector<Item> &items) const {
  alpha *= std::clamp(node.alpha(), 0.0, 1.0);
  if (alpha <= 0) {
    return;
  }
  // The scene counts upwards and anticlockwise, the painter downwards and clockwise.
  QTransform transform = parent;
  transform.translate(node.position().x(), -node.position().y());
  transform.rotate(-degrees(node.rotation()));
  transform.scale(node.xScale(), node.yScale());
  z += node.zPosition();
  if (node.texture() || node.label()) {
    items.push_back({&node, transform, alpha, z});
  }
  for (const auto &child : node.children()) {
    collect(*child, transform, alpha, z, items);
  }
}

const ScenePainter::Prepared *ScenePainter::pictureOf(const Item &item, double pixelsPerPoint) {
  const auto &frame = item.node->texture();
  const QSizeF size = item.node->size();
  if (!frame || size.isEmpty()) {
    return nullptr;
  }
  const Prepared found = prepared(*frame, rounded(size * pixelsPerPoint));
  const auto shown =
      found.readable ? m_shown.insert_or_assign(item.node, found).first : m_shown.find(item.node);
  return shown == m_shown.end() || shown->second.image.isNull() ? nullptr : &shown->second;
}

void ScenePainter::drawSprite(QPainter &painter, const Item &item, const Prepared &picture) {
  const QSizeF size = item.node->size();
  const QPointF corner(-item.node->anchor().x() * size.width(),
                       -(1 - item.node->anchor().y()) * size.height());
  const QRectF place(corner.x() + picture.part.x() * size.width(),
                     corner.y() + picture.part.y() * size.height(),
                     picture.part.width() * size.width(), picture.part.height() * size.height());
  for (const QRectF &band : bands(painter, item.transform.mapRect(place))) {
    painter.save();
    painter.setClipRect(band, Qt::IntersectClip);
    enter(painter, item);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, picture.smooth);
    painter.drawImage(place, picture.image);
    painter.restore();
  }
}

void ScenePainter::enter(QPainter &painter, const Item &item) {
  painter.setTransform(item.transform, true);
  painter.setOpacity(painter.opacity() * item.alpha);
}

void ScenePainter::drawLabel(QPainter &painter, const Item &item) {
  const auto &label = item.node->label();
  if (!label) {
    return;
  }
  painter.save();
  enter(painter, item);
  QFont font(label->fontName);
  font.setPixelSize(std::max(qRound(label->fontSize), 1));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(label->color);
  const QFontMetricsF metrics(font);
  const QRectF bounds = metrics.boundingRect(label->text);
  painter.drawText(QPointF(-metrics.horizontalAdvance(label->text) / 2, -bounds.center().y()),
                   label->text);
  painter.restore();
}

ScenePainter::Prepared ScenePainter::prepared(const SpriteFrame &frame, QSize pixels) {
  const QString folder = frame.path.section(u'/', 0, -2);
  auto set = std::ranges::find(m_sets, folder, &FrameSet::folder);
  if (set == m_sets.end()) {
    set = m_sets.insert(m_sets.begin(), FrameSet{folder, {}});
  }
  m_sets.splice(m_sets.begin(), m_sets, set);
  const auto ofFile = [&](const Prepared &known) { return known.frame.path == frame.path; };
  const auto known = std::ranges::find_if(set->frames, ofFile);
  if (known != set->frames.end() && known->wanted == pixels && known->frame == frame) {
    Prepared ready = *known;
    if (ready.packed.bytes() > 0) {
      ready.image = ready.packed.unpacked();
      ready.packed = {};
    }
    return ready;
  }
  if (known != set->frames.end()) {
    // What was kept of the set is of files or a size that are no longer shown.
    forget(*set);
  }
  Prepared ready = prepare(frame, pixels);
  keep(*set, ready);
  return ready;
}

void ScenePainter::keep(FrameSet &set, const Prepared &ready) {
  Prepared kept = ready;
  makeRoom(kept.bytes());
  if (!fits(kept.bytes())) {
    kept.packed = PackedPicture(std::exchange(kept.image, {}));
    makeRoom(kept.bytes());
  }
  if (fits(kept.bytes())) {
    m_kept.pictures += kept.bytes().pictures;
    m_kept.packed += kept.bytes().packed;
    set.frames.push_back(std::move(kept));
  }
}

ScenePainter::Prepared ScenePainter::prepare(const SpriteFrame &frame, QSize pixels) {
  ++m_framesDecoded;
  Prepared ready;
  ready.frame = frame;
  ready.wanted = pixels;
  QImage whole =
      cropped(frame.path.isEmpty() ? frame.picture : FrameFile::decode(frame.path), frame);
  if (whole.isNull()) {
    ready.readable = false;
    return ready;
  }
  // Pixels that are blown up stay hard; pixels that are merged are averaged once, here.
  ready.smooth = isReduced(whole.size(), pixels, 1);
  whole = premultiplied(std::move(whole));
  if (isReduced(whole.size(), pixels, leastReduction)) {
    whole = premultiplied(whole.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  }
  const QRect visible = AlphaBounds::pixels(whole, 0);
  if (visible.isEmpty()) {
    return ready;
  }
  // One transparent pixel stays around, so that edges fade out when the picture is transformed.
  const QRect content = visible.adjusted(-1, -1, 1, 1).intersected(whole.rect());
  const QSizeF size = whole.size();
  ready.image = content == whole.rect() ? whole : whole.copy(content);
  ready.strongestAlpha = AlphaBounds::strongest(ready.image);
  ready.part = QRectF(content.x() / size.width(), content.y() / size.height(),
                      content.width() / size.width(), content.height() / size.height());
  return ready;
}

bool ScenePainter::fits(Budget wanted) const {
  return m_kept.pictures + wanted.pictures <= m_budget.pictures &&
         m_kept.packed + wanted.packed <= m_budget.packed;
}

void ScenePainter::makeRoom(Budget wanted) {
  while (m_sets.size() > 1 && !fits(wanted)) {
    forget(m_sets.back());
    m_sets.pop_back();
  }
}

void ScenePainter::forget(FrameSet &set) {
  for (const Prepared &frame : set.frames) {
    m_kept.pictures -= frame.bytes().pictures;
    m_kept.packed -= frame.bytes().packed;
  }
  set.frames.clear();
}

} // namespace morvo
