#include "pet/DesktopPetWindow.h"

#include "pet/InkRegion.h"
#include "pet/PanelGeometry.h"

#include <QExposeEvent>
#include <QMouseEvent>
#include <QPaintDevice>
#include <QSurfaceFormat>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvo {
namespace {

/// Between the pictures of a fade.
constexpr Duration fadeStep = std::chrono::nanoseconds(std::chrono::seconds(1)) / 60;
/// Orders that follow each other faster share a picture: the eye sees no more, and a burst of
/// events must not wait for a drawing each.
constexpr Duration leastBetweenOrders = fadeStep;
/// A notch of the wheel turns by this much, and scrolls by as much as three lines of text.
constexpr double angleOfNotch = 120;
constexpr double pixelsOfNotch = 40;
/// What is fainter than this share of the pet's strongest pixel is only its glow.
constexpr double inkShare = 110.0 / 255;
/// Taking clicks needs no finer outline than this, nor a fresher one.
constexpr int inputCell = 4;
constexpr Duration inputAge = std::chrono::milliseconds(250);
/// A cut window shows its outline.
constexpr int shapeCell = 1;
/// The revision of a window without a picture yet; no scene gets that far.
constexpr std::uint64_t nothingDrawn = ~std::uint64_t{0};

QSurfaceFormat transparentFormat() {
  QSurfaceFormat format;
  format.setAlphaBufferSize(8);
  return format;
}

DragTrack::Time timeOf(const QMouseEvent &event) {
  return std::chrono::milliseconds(event.timestamp());
}

} // namespace

DesktopPetWindow::DesktopPetWindow(const Ground &ground, PetTouch &touch)
    : m_ground(ground), m_touch(&touch), m_store(this), m_drawnRevision(nothingDrawn) {
  setSurfaceType(QSurface::RasterSurface);
  setFormat(transparentFormat());
  setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint);
  m_ground.windows.onCompositingChanged([this] { compositingChanged(); });
}

DesktopPetWindow::~DesktopPetWindow() { retire(); }

void DesktopPetWindow::showAt(const QRect &place, int spriteSide) {
  m_place = place;
  m_spriteSide = spriteSide;
  assertPlace();
  create();
  m_ground.windows.prepareOverlay(*this);
  layBubble(false);
  if (!m_ground.windows.isCompositing()) {
    // Until the first picture tells the outline: the server asks no window for a picture that has
    // no pixel at all.
    m_shape = QRect(0, 0, 1, 1);
    m_ground.windows.setShape(*this, m_shape);
  }
  show();
}

void DesktopPetWindow::resizeTo(const QRect &place, int spriteSide) {
  m_place = place;
  m_spriteSide = spriteSide;
  if (m_drag) {
    m_drag->placeWindow(place.topLeft());
  }
  assertPlace();
  layBubble(false);
  draw(QRect(QPoint(), size()));
}

void DesktopPetWindow::moveTo(QPoint corner) {
  if (corner != m_place.topLeft()) {
    m_place.moveTopLeft(corner);
    assertPlace();
  }
}

void DesktopPetWindow::retire() {
  if (m_retired) {
    return;
  }
  m_retired = true;
  m_drag.reset();
  m_timer.cancel();
  m_ground.windows.onCompositingChanged({});
  hide();
}

QRect DesktopPetWindow::spriteRect() const {
  return {(width() - m_spriteSide) / 2, height() - m_spriteSide, m_spriteSide, m_spriteSide};
}

QRect DesktopPetWindow::bubbleArea() const {
  return {0, 0, width(), std::max(0, height() - m_spriteSide)};
}

void DesktopPetWindow::setBubble(const QString &text, const BubbleLook &look) {
  const bool newWords = text != m_bubbleText;
  if (!newWords && look == m_bubbleLook) {
    return;
  }
  m_bubbleText = text;
  m_bubbleLook = look;
  layBubble(newWords);
  draw(bubbleArea());
  arm();
}

void DesktopPetWindow::layBubble(bool newWords) {
  SpeechBubble bubble(m_bubbleText, m_bubbleLook, bubbleArea().size());
  if (newWords && isExposed()) {
    m_bubble.change(std::move(bubble), m_ground.clock.instant());
  } else {
    m_bubble.replace(std::move(bubble));
  }
}

void DesktopPetWindow::exposeEvent(QExposeEvent * /*event*/) {
  if (m_retired) {
    return;
  }
  if (!isExposed()) {
    m_timer.cancel();
    return;
  }
  m_ground.scene.advance(m_ground.clock.instant());
  const bool isDrawn = m_store.size() == size() && m_ratio == devicePixelRatio() &&
                       m_drawnRevision == m_ground.scene.revision() && !m_bubble.isRunning();
  if (isDrawn) {
    // Only uncovered, as happens with each new outline where nothing composes: show it again.
    m_store.flush(QRect(QPoint(), size()));
    if (m_timer.isActive()) {
      return;
    }
  } else {
    draw(QRect(QPoint(), size()));
  }
  arm();
}

void DesktopPetWindow::resizeEvent(QResizeEvent * /*event*/) {
  // Qt keeps a window's pixels when their density changes, and so changes its points.
  // Once for each density: not every system has every size to give.
  if (!m_retired && size() != m_place.size() && devicePixelRatio() != m_placedRatio) {
    assertPlace();
  }
}

void DesktopPetWindow::assertPlace() {
  m_placedRatio = devicePixelRatio();
  // With the size: on the way onto a monitor of another density Qt may have another one.
  setGeometry(m_place);
}

void DesktopPetWindow::wake() {
  if (m_retired || !isExposed()) {
    return;
  }
  const Duration sinceDrawing = m_ground.clock.instant() - m_drawnAt;
  if (sinceDrawing >= leastBetweenOrders) {
    tick();
  } else {
    m_timer = m_ground.scheduler.after(leastBetweenOrders - sinceDrawing, [this] { tick(); });
  }
}

void DesktopPetWindow::tick() {
  m_ground.scene.advance(m_ground.clock.instant());
  QRegion changed;
  if (devicePixelRatio() != m_ratio) {
    changed += QRect(QPoint(), size());
  }
  if (m_ground.scene.revision() != m_drawnRevision) {
    changed += spriteRect();
  }
  if (m_bubble.isRunning()) {
    changed += bubbleArea();
  }
  if (!changed.isEmpty()) {
    draw(changed);
  }
  arm();
}

void DesktopPetWindow::arm() {
  std::optional<Duration> interval = m_ground.scene.frameInterval();
  if (m_bubble.isRunning()) {
    interval = std::min(interval.value_or(fadeStep), fadeStep);
  }
  if (m_retired || !isExposed() || !interval) {
    m_timer.cancel();
    return;
  }
  // Counted from the last planned tick, or each late timer would slow the animation down.
  const Instant now = m_ground.clock.instant();
  const Instant planned = m_nextTick + *interval;
  m_nextTick = planned > now && planned <= now + *interval ? planned : now + *interval;
  m_timer = m_ground.scheduler.after(m_nextTick - now, [this] { tick(); });
}

void DesktopPetWindow::draw(const QRegion &changed) {
  if (m_retired || !isExposed()) {
    return;
  }
  const QRect whole(QPoint(), size());
  const Instant now = m_ground.clock.instant();
  bool all = m_drawnRevision == nothingDrawn || changed.boundingRect() == whole;
  if (m_store.size() != size() || m_ratio != devicePixelRatio()) {
    m_store.resize(size());
    all = true;
  }
  if (std::exchange(m_ratio, devicePixelRatio()) != devicePixelRatio()) {
    // Qt may have changed the size again since it told of it.
    assertPlace();
  }
  const QRegion dirty = all ? QRegion(whole) : changed & whole;
  m_store.beginPaint(dirty);
  {
    QPainter painter(m_store.paintDevice());
    const double ratio = m_store.paintDevice()->devicePixelRatioF();
    painter.setClipRegion(dirty);
    // As a source, not as a clearing: Qt fills that by itself and wakes no threads for it.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(dirty.boundingRect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (dirty.intersects(spriteRect())) {
      painter.setClipRegion(dirty & spriteRect());
      m_ground.scene.present();
      m_painter.paint(painter, m_ground.scene, spriteRect(), ratio);
      m_drawnRevision = m_ground.scene.revision();
    }
    painter.setClipRegion(dirty);
    m_bubble.paint(painter, bubbleArea(), now, ratio);
  }
  updateRegions(all);
  m_store.endPaint();
  m_store.flush(dirty);
  m_bubble.settle(now);
  m_drawnAt = now;
  ++m_drawings;
  if (const auto drawn = std::exchange(m_onNextDrawing, nullptr)) {
    drawn();
  }
}

const QImage *DesktopPetWindow::canvas() {
  QPaintDevice *device = m_store.paintDevice();
  return device->devType() == QInternal::Image ? static_cast<QImage *>(device) : nullptr;
}

void DesktopPetWindow::updateRegions(bool whole) {
  const QImage *image = canvas();
  if (image == nullptr) {
    return;
  }
  const int alpha =
      std::max(1, static_cast<int>(std::lround(inkShare * m_painter.strongestAlpha())));
  QRegion bubble;
  if (!m_bubble.present().isEmpty()) {
    bubble = m_bubble.present().placeIn(bubbleArea());
  }
  if (!m_ground.windows.isCompositing()) {
    constexpr int bubbleAlpha = 128;
    const QRegion shape = InkRegion::of(*image, spriteRect(), alpha, shapeCell) +
                          InkRegion::of(*image, bubbleArea(), bubbleAlpha, shapeCell);
    if (m_shape != shape) {
      m_shape = shape;
      m_ground.windows.setShape(*this, shape);
    }
  }
  const Instant now = m_ground.clock.instant();
  const bool bubbleMoved = m_bubble.isRunning();
  if (!whole && !bubbleMoved && now - m_regionsAt < inputAge) {
    return;
  }
  m_regionsAt = now;
  const QRegion input = InkRegion::of(*image, spriteRect(), alpha, inputCell) + bubble;
  if (whole || input != m_inputRegion) {
    m_inputRegion = input;
    m_ground.windows.setInputRegion(*this, input);
  }
}

void DesktopPetWindow::compositingChanged() {
  if (m_ground.windows.isCompositing() && m_shape) {
    m_shape.reset();
    m_ground.windows.setShape(*this, std::nullopt);
  }
  draw(QRect(QPoint(), size()));
}

void DesktopPetWindow::mousePressEvent(QMouseEvent *event) {
  if (m_retired) {
    return;
  }
  if (event->button() == Qt::LeftButton) {
    loseDrag();
    m_touch->pressed();
    m_drag.emplace(event->globalPosition(), m_place.topLeft(), timeOf(*event));
  } else if (event->button() == Qt::RightButton) {
    m_touch->menuRequested(event->globalPosition().toPoint());
  }
}

void DesktopPetWindow::mouseMoveEvent(QMouseEvent *event) {
  if (m_retired || !m_drag) {
    return;
  }
  if (!event->buttons().testFlag(Qt::LeftButton)) {
    // Somebody else got the release, as a screen lock does.
    loseDrag();
    return;
  }
  m_drag->move(event->globalPosition(), timeOf(*event));
  m_touch->dragged(*m_drag);
}

void DesktopPetWindow::mouseReleaseEvent(QMouseEvent *event) {
  if (m_retired || event->button() != Qt::LeftButton || !m_drag) {
    return;
  }
  if (event->globalPosition() != m_drag->pointer()) {
    m_drag->move(event->globalPosition(), timeOf(*event));
    m_touch->dragged(*m_drag);
  }
  endDrag();
}

void DesktopPetWindow::endDrag() {
  const auto drag = std::exchange(m_drag, std::nullopt);
  if (drag && drag->hasMoved()) {
    m_touch->released(*drag);
  } else if (drag) {
    m_touch->clicked();
  }
}

void DesktopPetWindow::loseDrag() {
  const auto drag = std::exchange(m_drag, std::nullopt);
  if (drag && drag->hasMoved()) {
    m_touch->dropped();
  }
}

void DesktopPetWindow::wheelEvent(QWheelEvent *event) {
  const double pixels = event->angleDelta().y() * pixelsOfNotch / angleOfNotch;
  if (!m_retired && pixels != 0) {
    m_touch->scrolled(pixels);
  }
}

} // namespace morvo
