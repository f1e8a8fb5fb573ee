#pragma once

#include "app/PanelStage.h"
#include "panels/ScreenItem.h"
#include "pet/ScenePainter.h"

#include <QPointer>

namespace morvo {

/// The pet on the panel's stage. Time passes there only while the item is on the screen; a hidden
/// one neither draws nor keeps any frame.
class PetStageItem : public morvo::ScreenItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PanelStage *stage READ stage WRITE setStage NOTIFY stageChanged REQUIRED)

public:
  explicit PetStageItem(QQuickItem *parent = nullptr);

  [[nodiscard]] PanelStage *stage() const { return m_stage; }
  void setStage(PanelStage *stage);

  void paint(QPainter *painter) override;
  /// Whether the stage's time passes.
  [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }

Q_SIGNALS:
  void stageChanged();

protected:
  void onScreenChanged() override;

private:
  void tick();

  QPointer<PanelStage> m_stage;
  ScenePainter m_painter;
  Scheduler::Timer m_timer;
  std::uint64_t m_paintedRevision = 0;
};

} // namespace morvo
