#include "pet/PetMotion.h"

#include "pet/PanelGeometry.h"
#include "pet/PetFlight.h"
#include "pet/PetStroll.h"

#include <algorithm>
#include <iterator>

namespace morvo {

PetMotion::PetMotion(const Ground &ground) : m_ground(ground) {}

PetMotion::~PetMotion() {
  endCarrying();
  endFlight();
  cancelStroll();
}

void PetMotion::pickUp() {
  endCarrying();
  endFlight();
  cancelStroll();
}

void PetMotion::carry(const DragTrack &track) {
  // The pet may have set out between the press and the first move.
  cancelStroll();
  m_ground.window.moveTo(track.windowOrigin());
  if (track.hasMoved()) {
    m_isCarried = true;
    m_ground.scene.setCarried(true, track.velocity().x());
    m_ground.window.wake();
  }
}

void PetMotion::letGo(const DragTrack &track) {
  endCarrying();
  if (track.isThrow()) {
    throwPet(track.velocity());
  } else {
    recoverIfOffscreen();
  }
}

void PetMotion::drop() {
  endCarrying();
  recoverIfOffscreen();
}

void PetMotion::endCarrying() {
  if (m_isCarried) {
    m_isCarried = false;
    m_ground.scene.setCarried(false, 0);
    m_ground.window.wake();
  }
}

void PetMotion::throwPet(QPointF velocity) {
  if (!PetFlight::isThrow(velocity)) {
    return;
  }
  cancelStroll();
  m_velocity = velocity;
  m_ground.scene.setTossed(true);
  m_ground.window.wake();
  m_flight = m_ground.scheduler.every(PetFlight::stepTime, [this] { flyOn(); });
}

void PetMotion::flyOn() {
  const auto area = workArea();
  if (!area) {
    endFlight();
    return;
  }
  const PetFlight::Step step = PetFlight::physicsStep(m_ground.window.place(), m_velocity, *area);
  m_velocity = step.velocity;
  m_ground.window.moveTo(step.origin);
  if (step.isAtRest) {
    endFlight();
  }
}

void PetMotion::endFlight() {
  if (m_flight.isActive()) {
    m_flight.cancel();
    m_ground.scene.setTossed(false);
    m_ground.window.wake();
  }
}

void PetMotion::strollRandom() {
  const auto area = workArea();
  if (!area || isMoving()) {
    return;
  }
  if (const auto distance = PetStroll::distance(m_ground.window.place(), *area, m_ground.random)) {
    stroll(*distance, PetStroll::speed);
  }
}

void PetMotion::stroll(double distance, double speed) {
  if (isMoving() || !PetStroll::isWalk(distance)) {
    return;
  }
  m_ground.scene.beginGait(distance);
  m_ground.window.wake();
  m_walk = Walk{.startX = static_cast<double>(m_ground.window.place().x()),
                .distance = distance,
                .start = m_ground.clock.instant(),
                .duration = PetStroll::duration(distance, speed),
                .timer = m_ground.scheduler.every(PetStroll::stepTime, [this] { walkOn(); })};
}

void PetMotion::walkOn() {
  const double t = inSeconds(m_ground.clock.instant() - m_walk.start) / inSeconds(m_walk.duration);
  m_ground.window.moveTo(
      {qRound(m_walk.startX + m_walk.distance * PetStroll::ease(t)), m_ground.window.place().y()});
  if (t >= 1) {
    cancelStroll();
    recoverIfOffscreen();
  }
}

void PetMotion::cancelStroll() {
  if (isStrolling()) {
    m_walk.timer.cancel();
    m_ground.scene.endGait();
    m_ground.window.wake();
  }
}

void PetMotion::comeHere() {
  cancelStroll();
  const QRect at = m_ground.window.place();
  stroll(m_ground.screens.pointer().x() - at.width() / 2.0 - at.x(), PetStroll::speedToPointer);
}

void PetMotion::place(QPoint origin) {
  endCarrying();
  endFlight();
  cancelStroll();
  m_ground.window.moveTo(origin);
}

void PetMotion::recoverIfOffscreen() {
  if (const auto area = workArea()) {
    m_ground.window.moveTo(PanelGeometry::recoveredOrigin(m_ground.window.place(), *area));
  }
}

void PetMotion::recoverIfOutOfReach() {
  const auto area = workArea();
  if (!isMoving() && !isWithinReach() && area) {
    m_ground.window.moveTo(PanelGeometry::reachableOrigin(m_ground.window.place(), *area));
  }
}

bool PetMotion::isWithinReach() const {
  std::vector<QRect> workAreas;
  std::ranges::transform(m_ground.screens.areas(), std::back_inserter(workAreas),
                         &Screens::Area::workArea);
  return workAreas.empty() || PanelGeometry::isReachable(m_ground.window.place(), workAreas);
}

void PetMotion::windowPlaced(const QRect &panel) {
  if (isStrolling()) {
    m_walk.startX += panel.x() - m_ground.window.place().x();
  }
}

std::optional<QRect> PetMotion::workArea() const {
  const auto areas = m_ground.screens.areas();
  if (areas.empty()) {
    return std::nullopt;
  }
  std::vector<QRect> frames;
  std::ranges::transform(areas, std::back_inserter(frames), &Screens::Area::frame);
  return areas[PanelGeometry::screenOf(m_ground.window.place(), frames).value_or(0)].workArea;
}

} // namespace morvo
