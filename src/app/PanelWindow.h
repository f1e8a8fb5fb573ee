#pragma once

#include "app/PanelHost.h"

#include <QElapsedTimer>
#include <QObject>
#include <QUrl>

#include <memory>

class QQuickView;

namespace morvo {

class PetStore;

/// The panel as a QML window that floats above the others. Nothing of QML is loaded before the
/// panel is first shown. Main thread.
class PanelWindow final : public QObject, public PanelHost {
  Q_OBJECT

public:
  /// `source` is the address of the QML file; its root gets `store` as a property.
  PanelWindow(PetStore &store, QUrl source);
  ~PanelWindow() override;

  void show(const std::optional<QRect> &icon) override;
  void close() override;
  [[nodiscard]] bool isShown() const override;
  [[nodiscard]] bool hasJustClosedItself() const override;
  void setTransient(bool transient) override { m_transient = transient; }

private:
  [[nodiscard]] bool load();
  void closeWhenInactive();

  PetStore *m_store;
  QUrl m_source;
  std::unique_ptr<QQuickView> m_view;
  bool m_transient = true;
  /// Runs from the moment at which a click elsewhere closed the panel.
  QElapsedTimer m_sinceClosedItself;
};

} // namespace morvo
