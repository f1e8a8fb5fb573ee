#pragma once

#include "app/PanelEntries.h"
#include "app/PanelHost.h"
#include "app/PanelStage.h"

#include <QElapsedTimer>
#include <QUrl>

#include <functional>
#include <memory>

class QQuickItem;
class QQuickView;
class QWindow;

namespace morvo {

class PetStore;

/// The panel as a QML window that floats above the others. Nothing of QML is loaded before the
/// panel is first shown; then the view stays, and with it what was typed and the chosen tab. Main
/// thread.
class PanelWindow final : public QObject, public PanelHost {
  Q_OBJECT

public:
  /// What the panel stands on; all references outlive the window.
  struct Ground {
    PetStore &store;
    PanelEntries &entries;
    PanelStage &stage;
    /// Where the pet stands on the desktop; nothing while it is hidden. May be missing.
    std::function<std::optional<QRect>()> petPlace;
    /// Told of the panel's window each time the panel has come onto the screen, and of null when
    /// it has left. May be missing.
    std::function<void(QWindow *)> onScreen;
    /// The address of the QML file; its root gets store, entries and stage as properties.
    QUrl source;
  };

  /// The main panel's address.
  static const QString mainPanel;

  explicit PanelWindow(Ground ground);
  Q_DISABLE_COPY_MOVE(PanelWindow)
  ~PanelWindow() override;

  void show(const std::optional<QRect> &icon, const std::optional<QPoint> &click) override;
  [[nodiscard]] bool isShown() const override;
  [[nodiscard]] bool hasJustClosedItself() const override;
  void setTransient(bool transient) override { m_transient = transient; }
  Q_SLOT void close() override;

private:
  [[nodiscard]] bool load();
  void closeWhenInactive();
  void drawn();
  void visibleChanged(bool visible) const;

  Ground m_ground;
  std::unique_ptr<QQuickView> m_view;
  bool m_transient = true;
  /// Shown, and yet to be drawn.
  bool m_awaitsFrame = false;
  /// Since it was last shown.
  bool m_hasBeenActive = false;
  /// Runs from the moment at which a click elsewhere closed the panel.
  QElapsedTimer m_sinceClosedItself;
};

} // namespace morvo
