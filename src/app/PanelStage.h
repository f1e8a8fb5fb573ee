#pragma once

#include "base/Scheduler.h"
#include "pet/PetScene.h"

#include <QImage>
#include <QObject>

#include <utility>

namespace morvo {

/// The panel's stage, for the item that paints it. All it refers to outlives it. Main thread.
class PanelStage final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool still READ isStill CONSTANT)

public:
  struct Ground {
    PetScene &scene;
    Clock &clock;
    Scheduler &scheduler;
    /// A picture to be taken off screen: the pet stands as it is.
    bool isStill = false;
  };

  /// `portrait` is shown instead of the scene, if there is one.
  explicit PanelStage(const Ground &ground, QImage portrait = {})
      : m_ground(ground), m_portrait(std::move(portrait)) {}

  [[nodiscard]] PetScene &scene() const { return m_ground.scene; }
  [[nodiscard]] Clock &clock() const { return m_ground.clock; }
  [[nodiscard]] Scheduler &scheduler() const { return m_ground.scheduler; }
  [[nodiscard]] bool isStill() const { return m_ground.isStill; }
  [[nodiscard]] const QImage &portrait() const { return m_portrait; }

private:
  Ground m_ground;
  QImage m_portrait;
};

} // namespace morvo
