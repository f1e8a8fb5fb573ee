#include "pet/DragTrack.h"

#include <cmath>

namespace morvo {
namespace {

/// Moving further than this with the button down is no click.
constexpr double clickReach = 3;
constexpr DragTrack::Time frameTime{16};
/// Pixels a second for each pixel of the last way.
constexpr double framesPerSecond = 55;
/// A last way above this throws.
constexpr double throwingWay = 9;

double length(QPointF way) { return std::hypot(way.x(), way.y()); }

} // namespace

DragTrack::DragTrack(QPointF pointer, QPoint window, Time at)
    : m_pressedAt(pointer), m_windowAt(window), m_samples{{pointer, at}} {}

void DragTrack::move(QPointF pointer, Time at) {
  if (at < m_samples.back().at) {
    // The clock of the events begins anew every 49 days: no older sample can be told from a later.
    m_samples = {{this->pointer(), at}};
  }
  while (m_samples.size() > 1 && at - m_samples[1].at >= frameTime) {
    m_samples.pop_front();
  }
  m_lastWay = pointer - m_samples.front().pointer;
  m_samples.push_back({pointer, at});
  m_moved = m_moved || length(pointer - m_pressedAt) > clickReach;
}

void DragTrack::placeWindow(QPoint corner) { m_windowAt = corner - (pointer() - m_pressedAt); }

QPoint DragTrack::windowOrigin() const { return (m_windowAt + pointer() - m_pressedAt).toPoint(); }

QPointF DragTrack::velocity() const { return m_lastWay * framesPerSecond; }

bool DragTrack::isThrow() const { return length(m_lastWay) > throwingWay; }

} // namespace morvo
