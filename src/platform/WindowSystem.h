#pragma once

#include <QRegion>
#include <QWindow>

#include <functional>
#include <optional>

namespace morvo {

/// What an overlay window needs of the desktop beyond what QWindow offers. Regions are in the
/// window's own device-independent pixels. Where the desktop cannot serve a wish, it is dropped
/// without a word: the window then stays an ordinary one. Main thread.
class WindowSystem {
public:
  virtual ~WindowSystem() = default;

  /// Puts the window on all workspaces and above all others, full-screen ones included, keeps it
  /// out of task bars and pagers, and lets it stand partly off the screen. To be called after
  /// `create()` and before the window is shown.
  virtual void prepareOverlay(QWindow &window) = 0;
  /// Lets clicks outside `region` through to the window below. An empty region lets all through.
  virtual void setInputRegion(QWindow &window, const QRegion &region) = 0;
  /// Cuts the window itself down to `region`, for desktops that show no transparency; nothing
  /// gives it its full rectangle back.
  virtual void setShape(QWindow &window, const std::optional<QRegion> &region) = 0;
  /// Puts an overlay right beneath `other`, which is on the screen, and so above all that stands
  /// beneath that; null puts it above all others again. It holds until the desktop restacks one of
  /// them.
  virtual void stackBeneath(QWindow &window, QWindow *other) = 0;
  /// Whether transparent pixels are shown as such. True where nothing is known.
  [[nodiscard]] virtual bool isCompositing() const = 0;
  /// Has `handler` called whenever `isCompositing` has changed; it replaces the one before, an
  /// empty one ends the calls.
  virtual void onCompositingChanged(std::function<void()> handler) = 0;
};

} // namespace morvo
