#pragma once

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
  /// Sets the size factor; the hub clamps and stores it.
  virtual void setPetScale(double scale) = 0;
  [[nodiscard]] virtual double petScale() const = 0;
};

} // namespace morvo
