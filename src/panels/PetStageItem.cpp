#include "panels/PetStageItem.h"

#include <QQuickWindow>

namespace morvo {
namespace {

/// How often a stage on which nothing runs is looked at.
constexpr auto restPeriod = std::chrono::milliseconds(250);
/// So small a picture needs few frames.
constexpr ScenePainter::Budget budget{.pictures = qsizetype{3} * 1024 * 1024,
                                      .packed = qsizetype{2} * 1024 * 1024};

} // namespace

PetStageItem::PetStageItem(QQuickItem *parent) : ScreenItem(parent), m_painter(budget) {}

void PetStageItem::setStage(PanelStage *stage) {
  if (m_stage == stage) {
    return;
  }
  m_stage = stage;
  Q_EMIT stageChanged();
  onScreenChanged();
}

void PetStageItem::onScreenChanged() {
  const bool isSeen = m_stage != nullptr && (isOnScreen() || m_stage->isStill());
  if (!isSeen) {
    m_timer = {};
    m_painter.forgetFrames();
    return;
  }
  m_stage->scene().present();
  if (m_stage->isStill()) {
    update();
    return;
  }
  if (!m_timer.isActive()) {
    tick();
  }
}

void PetStageItem::tick() {
  PetScene &scene = m_stage->scene();
  scene.advance(m_stage->clock().instant());
  if (scene.revision() != m_paintedRevision) {
    m_paintedRevision = scene.revision();
    update();
  }
  m_timer =
      m_stage->scheduler().after(scene.frameInterval().value_or(restPeriod), [this] { tick(); });
}

void PetStageItem::paint(QPainter *painter) {
  if (m_stage == nullptr) {
    return;
  }
  painter->setRenderHint(QPainter::SmoothPixmapTransform);
  if (const QImage &portrait = m_stage->portrait(); !portrait.isNull()) {
    QRectF place(QPointF(), QSizeF(portrait.size()).scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(boundingRect().center());
    painter->drawImage(place, portrait);
  } else {
    m_painter.paint(*painter, m_stage->scene(), boundingRect(),
                    window() != nullptr ? window()->effectiveDevicePixelRatio() : 1);
  }
}

} // namespace morvo
