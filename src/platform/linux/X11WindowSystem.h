#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/CompositorWatch.h"

#include <memory>

namespace morvo {

/// Overlay windows on X11. On any other platform of Qt every call does nothing, and the desktop
/// counts as compositing. Needs the application object, which must outlive it.
class X11WindowSystem final : public WindowSystem {
public:
  X11WindowSystem();

  void prepareOverlay(QWindow &window) override;
  void setInputRegion(QWindow &window, const QRegion &region) override;
  void setShape(QWindow &window, const std::optional<QRegion> &region) override;
  void stackBeneath(QWindow &window, QWindow *other) override;
  [[nodiscard]] bool isCompositing() const override;
  void onCompositingChanged(std::function<void()> handler) override;

private:
  /// Null when the platform is not X11.
  xcb_connection_t *m_connection = nullptr;
  std::unique_ptr<CompositorWatch> m_watch;
};

} // namespace morvo
