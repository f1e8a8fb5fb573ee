#pragma once

#include "pet/PetInteractions.h"

#include <QStringList>

#include <algorithm>
#include <functional>

namespace morvo::test {

/// Writes down what the user does to the pet.
class RecordedInteractions final : public PetInteractions {
public:
  void petTapped() override {
    ++taps;
    if (onTap) {
      onTap();
    }
  }
  void feed() override { ++feeds; }
  void playRandomPetAction() override { ++tricks; }
  bool playPetAction(const QString &frameSet) override {
    actions << frameSet;
    return true;
  }
  void setReply(const QString &text) override { replies << text; }
  [[nodiscard]] std::vector<PetChoice> petChoices() const override { return choices; }
  void choosePet(const QString &id) override { chosen << id; }
  void quitApp() override { ++quits; }
  void setPetScale(double scale) override {
    m_scale = std::clamp(scale, 0.8, 2.4);
    if (onScale) {
      onScale(m_scale);
    }
  }
  [[nodiscard]] double petScale() const override { return m_scale; }

  int taps = 0;
  int feeds = 0;
  int tricks = 0;
  int quits = 0;
  QStringList actions;
  QStringList replies;
  QStringList chosen;
  std::vector<PetChoice> choices{{QStringLiteral("morvo"), QStringLiteral("默沃"), true}};
  std::function<void()> onTap;
  /// Told of the clamped factor, as the hub tells the body.
  std::function<void(double)> onScale;

private:
  double m_scale = 1;
};

} // namespace morvo::test
