#pragma once

#include "pet/DragTrack.h"

#include <QPoint>

namespace morvo {

/// What hands do to the pet's window. Implemented by its owner. Main thread.
///
/// Each call may take the window away.
class PetTouch {
public:
  virtual ~PetTouch() = default;

  /// The left button went down on the pet.
  virtual void pressed() = 0;
  /// The pointer moved with the button down.
  virtual void dragged(const DragTrack &track) = 0;
  /// The button went up after a drag.
  virtual void released(const DragTrack &track) = 0;
  /// A drag has ended, but nobody saw when or where.
  virtual void dropped() = 0;
  /// The button went up where it had gone down, or nearly there.
  virtual void clicked() = 0;
  /// The right button went down, at this point of the desktop.
  virtual void menuRequested(QPoint at) = 0;
  /// The wheel turned by that many pixels of scrolling, away from the user above zero.
  virtual void scrolled(double pixels) = 0;
};

} // namespace morvo
