#pragma once

#include "base/Scheduler.h"
#include "pet/PetScene.h"

#include <QImage>
#include <QObject>

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
    /// Shown instead of the scene, if there is one.
    QImage portrait = {};
  };

  explicit PanelStage(const Ground &ground) : m_ground(ground) {}

  [[nodiscard]] PetScene &scene() const { return m_ground.scene; }
  [[nodiscard]] Clock &clock() const { return m_ground.clock; }
  [[nodiscard]] Scheduler &scheduler() const { return m_ground.scheduler; }
  [[nodiscard]] bool isStill() const { return m_ground.isStill; }
  [[nodiscard]] const QImage &portrait() const { return m_ground.portrait; }

private:
  Ground m_ground;
};

} // namespace morvo
