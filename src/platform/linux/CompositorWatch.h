#pragma once

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <functional>

namespace morvo {

/// Watches whether an X11 compositing manager runs: the owner of the selection `_NET_WM_CM_S<n>`.
/// Costs one comparison an X event; the server is asked only after a change of a selection's owner.
/// Main thread; lives no longer than the application object.
///
/// Qt's X11 platform subscribes to the changes of exactly this selection for itself, so the notices
/// arrive on its connection without another subscription.
class CompositorWatch final : public QAbstractNativeEventFilter {
public:
  /// `connection` is that of the application object and outlives the watch.
  CompositorWatch(xcb_connection_t *connection, int screenNumber);
  CompositorWatch(const CompositorWatch &) = delete;
  CompositorWatch &operator=(const CompositorWatch &) = delete;
  ~CompositorWatch() override;

  [[nodiscard]] bool isCompositing() const { return m_compositing; }
  /// Replaces the handler that is called after a change.
  void onChanged(std::function<void()> handler) { m_handler = std::move(handler); }

  bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
  [[nodiscard]] bool hasOwner() const;

  xcb_connection_t *m_connection;
  xcb_atom_t m_selection;
  /// The event number of a change of owner; 0, which no event has, when the server sends none.
  std::uint8_t m_ownerEvent = 0;
  bool m_compositing = false;
  std::function<void()> m_handler;
};

} // namespace morvo
