#pragma once

#include "pet/PetChoice.h"

#include <vector>

namespace morvo {

/// What the user does to the pet, told to whoever owns the state. Implemented by the hub. Main
/// thread.
class PetInteractions {
public:
  virtual ~PetInteractions() = default;

  /// A click on the pet.
  virtual void petTapped() = 0;
  virtual void feed() = 0;
  virtual void playRandomPetAction() = 0;
  /// Plays a catalogue action; the hub words it when that has no frames, and gives false.
  virtual bool playPetAction(const QString &frameSet) = 0;
  /// Puts a text into the speech bubble, without a voice.
  virtual void setReply(const QString &text) = 0;
  /// The pets there are, in the order they are listed.
  [[nodiscard]] virtual std::vector<PetChoice> petChoices() const = 0;
  /// Puts the pet of that id in place of the present one; an unknown id changes nothing.
  virtual void choosePet(const QString &id) = 0;
  /// Ends the program.
  virtual void quitApp() = 0;
  /// Sets the size factor; the hub clamps and stores it.
  virtual void setPetScale(double scale) = 0;
  [[nodiscard]] virtual double petScale() const = 0;
};

} // namespace morvo
