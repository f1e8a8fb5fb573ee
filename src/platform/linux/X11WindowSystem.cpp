#include "platform/linux/X11WindowSystem.h"

#include "platform/linux/X11Atom.h"
#include "platform/linux/XcbReply.h"

#include <QGuiApplication>

#include <xcb/shape.h>

#include <array>
#include <cmath>
#include <vector>

namespace morvo {
namespace {

constexpr std::uint32_t allWorkspaces = 0xFFFFFFFF;
constexpr std::uint8_t bitsOfNumber = 32;
/// The application's windows stand on the first screen of the display; X servers of today have
/// one, whatever the number of monitors.
constexpr int screenNumber = 0;

/// Device-independent rectangles in the server's pixels, grown to whole ones.
std::vector<xcb_rectangle_t> nativeRectangles(const QRegion &region, double scale) {
  std::vector<xcb_rectangle_t> rectangles;
  rectangles.reserve(static_cast<std::size_t>(region.rectCount()));
  for (const QRect &rect : region) {
    const auto left = static_cast<std::int16_t>(std::floor(rect.x() * scale));
    const auto top = static_cast<std::int16_t>(std::floor(rect.y() * scale));
    const double right = std::ceil((rect.x() + rect.width()) * scale);
    const double bottom = std::ceil((rect.y() + rect.height()) * scale);
    rectangles.push_back({left, top, static_cast<std::uint16_t>(right - left),
                          static_cast<std::uint16_t>(bottom - top)});
  }
  return rectangles;
}

void setRectangles(xcb_connection_t *connection, QWindow &window, xcb_shape_sk_t kind,
                   const QRegion &region) {
  const auto rectangles = nativeRectangles(region, window.devicePixelRatio());
  xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED,
                       static_cast<xcb_window_t>(window.winId()), 0, 0,
                       static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
  xcb_flush(connection);
}

/// The child of the root window that holds the window: the frame a window manager put around it, or
/// the window itself; nothing when the server knows it no more.
std::optional<xcb_window_t> topLevel(xcb_connection_t *connection, xcb_window_t window) {
  while (true) {
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!tree) {
      return std::nullopt;
    }
    if (tree->parent == tree->root) {
      return window;
    }
    window = tree->parent;
  }
}

} // namespace

X11WindowSystem::X11WindowSystem() {
  if (const auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
    // Null on platforms of Qt that only offer the interface.
    m_connection = native->connection();
  }
  if (m_connection != nullptr) {
    m_watch = std::make_unique<CompositorWatch>(m_connection, screenNumber);
  }
}

void X11WindowSystem::prepareOverlay(QWindow &window) {
  if (m_connection == nullptr) {
    return;
  }
  const auto id = static_cast<xcb_window_t>(window.winId());
  // A window manager puts a window that fills the screen above every window it manages, and holds
  // those it manages on the screen. Qt's own flag for this would leave a Wayland window unshown.
  constexpr std::uint32_t unmanaged = 1;
  xcb_change_window_attributes(m_connection, id, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
  xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id,
                      X11Atom::named(m_connection, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL,
                      bitsOfNumber, 1, &allWorkspaces);
  // Qt keeps the states it does not know when it adds its own at the time of showing.
  const std::array states{X11Atom::named(m_connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                          X11Atom::named(m_connection, "_NET_WM_STATE_SKIP_PAGER"),
                          X11Atom::named(m_connection, "_NET_WM_STATE_STICKY")};
  xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id,
                      X11Atom::named(m_connection, "_NET_WM_STATE"), XCB_ATOM_ATOM, bitsOfNumber,
                      static_cast<std::uint32_t>(states.size()), states.data());
}

void X11WindowSystem::setInputRegion(QWindow &window, const QRegion &region) {
  if (m_connection != nullptr) {
    setRectangles(m_connection, window, XCB_SHAPE_SK_INPUT, region);
  }
}

void X11WindowSystem::setShape(QWindow &window, const std::optional<QRegion> &region) {
  if (m_connection == nullptr) {
    return;
  }
  if (region) {
    setRectangles(m_connection, window, XCB_SHAPE_SK_BOUNDING, *region);
    return;
  }
  xcb_shape_mask(m_connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                 static_cast<xcb_window_t>(window.winId()), 0, 0, XCB_PIXMAP_NONE);
  xcb_flush(m_connection);
}

void X11WindowSystem::stackBeneath(QWindow &window, QWindow *other) {
  if (m_connection == nullptr) {
    return;
  }
  std::uint16_t mask = XCB_CONFIG_WINDOW_STACK_MODE;
  std::vector<std::uint32_t> values{XCB_STACK_MODE_ABOVE};
  if (other != nullptr) {
    const auto frame = topLevel(m_connection, static_cast<xcb_window_t>(other->winId()));
    if (!frame) {
      return;
    }
    mask |= XCB_CONFIG_WINDOW_SIBLING;
    values = {*frame, XCB_STACK_MODE_BELOW};
  }
  // The frame may be gone by now, which is no reason for Qt to complain.
  xcb_discard_reply(m_connection, xcb_configure_window_checked(
                                      m_connection, static_cast<xcb_window_t>(window.winId()), mask,
                                      values.data())
                                      .sequence);
  xcb_flush(m_connection);
}

bool X11WindowSystem::isCompositing() const { return !m_watch || m_watch->isCompositing(); }

void X11WindowSystem::onCompositingChanged(std::function<void()> handler) {
  if (m_watch) {
    m_watch->onChanged(std::move(handler));
  }
}

} // namespace morvo
