#pragma once

#include "base/Clock.h"
#include "base/RandomSource.h"
#include "base/Scheduler.h"
#include "pet/DesktopPetWindow.h"
#include "pet/PetScene.h"
#include "platform/Screens.h"

#include <optional>

namespace morvo {

/// Moves the pet's window, and tells the scene what the body does meanwhile: the pet rests, is
/// carried by the pointer, flies or walks. Its timer runs at 60 steps a second, and only while the
/// pet flies or walks. Main thread.
///
/// Lives no longer than the window: a flight or a walk never outlives it, and the pet is put at
/// rest when it ends.
class PetMotion {
public:
  /// What it stands on; all of it outlives the motion.
  struct Ground {
    DesktopPetWindow &window;
    PetScene &scene;
    const Screens &screens;
    Clock &clock;
    Scheduler &scheduler;
    RandomSource &random;
  };

  explicit PetMotion(const Ground &ground);
  PetMotion(const PetMotion &) = delete;
  PetMotion &operator=(const PetMotion &) = delete;
  ~PetMotion();

  /// A hand is on the pet: whatever moved it ends.
  void pickUp();
  /// The pet goes with the pointer.
  void carry(const DragTrack &track);
  /// The hand lets go of a pet that it has carried: fast enough, and the pet flies.
  void letGo(const DragTrack &track);
  /// The hand has let go of a pet that it has carried, nobody knows how.
  void drop();

  /// Throws the pet, in pixels a second, y down. Too slow a throw does nothing.
  void throwPet(QPointF velocity);
  /// Walks somewhere. Dropped while the pet is carried, flies or walks, and where there is no room.
  void strollRandom();
  /// Walks that far, to the left below zero, at about that many pixels a second. Dropped like
  /// `strollRandom`, and when it is only a step.
  void stroll(double distance, double speed);
  /// Walks to below or above the pointer.
  void comeHere();
  /// The pet stands where its walk has brought it.
  void cancelStroll();
  /// Ends whatever moves the pet and puts it there.
  void place(QPoint origin);
  /// Takes the pet back so far that it can be seen and taken hold of.
  void recoverIfOffscreen();
  /// The same for a pet that was made smaller; nothing while something moves it.
  void recoverIfOutOfReach();
  /// Whether enough of the pet is on a screen to be seen and taken hold of; true where there is no
  /// screen at all.
  [[nodiscard]] bool isWithinReach() const;
  /// Somebody else is about to move or size the window; a flight or a walk goes on from there.
  void windowPlaced(const QRect &panel);

  [[nodiscard]] bool isCarried() const { return m_isCarried; }
  [[nodiscard]] bool isFlying() const { return m_flight.isActive(); }
  [[nodiscard]] bool isStrolling() const { return m_walk.timer.isActive(); }

private:
  struct Walk {
    double startX = 0;
    double distance = 0;
    Instant start;
    Duration duration{};
    Scheduler::Timer timer;
  };

  void flyOn();
  void walkOn();
  void endFlight();
  void endCarrying();
  [[nodiscard]] bool isMoving() const { return m_isCarried || isFlying() || isStrolling(); }
  /// Of the monitor on which the pet is, or of the main one.
  [[nodiscard]] std::optional<QRect> workArea() const;

  Ground m_ground;
  QPointF m_velocity;
  Scheduler::Timer m_flight;
  Walk m_walk;
  bool m_isCarried = false;
};

} // namespace morvo
