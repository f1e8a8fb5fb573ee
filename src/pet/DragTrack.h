#pragma once

#include <QPoint>
#include <QPointF>

#include <chrono>
#include <deque>

namespace morvo {

/// One drag of the pet's window by the pointer, from the press of the button to its release: where
/// the window goes, whether it is more than a click, and how fast the hand is. Device-independent
/// pixels of the desktop; times are those of the events.
class DragTrack {
public:
  using Time = std::chrono::milliseconds;

  /// The button went down there while the window's corner was at `window`.
  DragTrack(QPointF pointer, QPoint window, Time at);

  /// The pointer is there now.
  void move(QPointF pointer, Time at);

  /// Somebody else put the window's corner there, from where the drag goes on.
  void placeWindow(QPoint corner);

  /// Where the window's corner belongs.
  [[nodiscard]] QPoint windowOrigin() const;
  [[nodiscard]] QPointF pointer() const { return m_samples.back().pointer; }
  /// Whether the pointer was ever further away than a click allows.
  [[nodiscard]] bool hasMoved() const { return m_moved; }
  /// The way of the last move, as a pointer that reports once a frame would tell it: of a faster
  /// one the moves of the last frame time count together. Nothing passes while it stands still, so
  /// this is the last move also when the hand has waited since.
  [[nodiscard]] QPointF lastWay() const { return m_lastWay; }
  /// `lastWay` in pixels a second.
  [[nodiscard]] QPointF velocity() const;
  /// Whether the hand that lets go now throws.
  [[nodiscard]] bool isThrow() const;

private:
  struct Sample {
    QPointF pointer;
    Time at;
  };

  QPointF m_pressedAt;
  QPointF m_windowAt;
  /// The present place last; the first is what `lastWay` counts from.
  std::deque<Sample> m_samples;
  QPointF m_lastWay;
  bool m_moved = false;
};

} // namespace morvo
