#pragma once

#include "base/Diagnostics.h"
#include "pet/PetFolder.h"
#include "pet/PetScene.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

#include <numbers>

namespace morvo::test {

/// A scene of 200 by 200 points with a pet of the test's own making.
class PetSceneFixture : public testing::Test {
protected:
  PetSceneFixture() { m_sprites.setPersona(pet); }

  void frames(const QString &state, int count, QSize size = {8, 8}) {
    PetFolder::fill(m_folder.stateFolder(pet, state), count, size);
  }
  void present(const QByteArray &pack = {}) {
    if (!pack.isEmpty()) {
      m_folder.writePack(pet, pack);
    }
    m_scene.present();
  }
  void pass(double time) {
    m_clock.advance(seconds(time));
    m_scene.advance(m_clock.instant());
  }
  /// The frame set and number on the stage.
  [[nodiscard]] QString shown() const {
    return m_scene.pet()->texture()->path.section(u'/', -2).chopped(4);
  }
  [[nodiscard]] bool runs(const Node &node, const QString &key) const {
    return node.actionForKey(key).has_value();
  }
  /// How long a whole round of the resting frames takes.
  [[nodiscard]] std::optional<Duration> frameTime() const { return m_scene.frameInterval(); }
  [[nodiscard]] double highest(double overSeconds) {
    return extreme(overSeconds, [this] { return m_scene.breathNode().yScale(); });
  }
  template <typename Value> double extreme(double overSeconds, const Value &value) {
    double most = value();
    for (double time = 0; time < overSeconds; time += 0.01) {
      pass(0.01);
      most = std::max(most, value());
    }
    return most;
  }

  /// How far `node` has been turned, in degrees.
  [[nodiscard]] static double degrees(const Node &node) {
    return node.rotation() * 180 / std::numbers::pi;
  }

  const QString pet = QStringLiteral("custom-1");
  PetFolder m_folder;
  ManualClock m_clock;
  MemorySettings m_settings;
  Setting m_setting{m_settings, Environment()};
  SeededRandomSource m_random{1};
  MorvoSprites m_sprites{m_folder.files()};
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines.append(line); }};
  PetScene m_scene{{200, 200}, m_folder.files(), m_sprites, m_setting, m_clock, m_random};
};

} // namespace morvo::test
