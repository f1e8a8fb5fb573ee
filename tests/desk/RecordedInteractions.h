#pragma once

#include "pet/PetInteractions.h"

#include <functional>

namespace morvo::test {

/// Counts what the user does to the pet.
class RecordedInteractions final : public PetInteractions {
public:
  void petTapped() override {
    ++taps;
    if (onTap) {
      onTap();
    }
  }
  void feed() override {}
  void playRandomPetAction() override {}
  void setPetScale(double scale) override { m_scale = scale; }
  [[nodiscard]] double petScale() const override { return m_scale; }

  int taps = 0;
  std::function<void()> onTap;

private:
  double m_scale = 1;
};

} // namespace morvo::test
