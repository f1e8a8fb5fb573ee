#include "platform/linux/CompositorWatch.h"

#include "platform/linux/X11Atom.h"
#include "platform/linux/XcbReply.h"

#include <QCoreApplication>

namespace morvo {
namespace {

/// The first of the extension's events is the change of a selection's owner.
std::uint8_t selectionOwnerEvent(xcb_connection_t *connection) {
  constexpr QByteArrayView name("XFIXES");
  const auto cookie =
      xcb_query_extension(connection, static_cast<std::uint16_t>(name.size()), name.constData());
  const XcbReply<xcb_query_extension_reply_t> reply(
      xcb_query_extension_reply(connection, cookie, nullptr));
  return reply && reply->present != 0 ? reply->first_event : std::uint8_t{0};
}

} // namespace

CompositorWatch::CompositorWatch(xcb_connection_t *connection, int screenNumber)
    : m_connection(connection),
      m_selection(X11Atom::named(connection, "_NET_WM_CM_S" + QByteArray::number(screenNumber))),
      m_ownerEvent(selectionOwnerEvent(connection)), m_compositing(hasOwner()) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

CompositorWatch::~CompositorWatch() {
  if (QCoreApplication *application = QCoreApplication::instance()) {
    application->removeNativeEventFilter(this);
  }
}

bool CompositorWatch::nativeEventFilter(const QByteArray &eventType, void *message,
                                        qintptr * /*result*/) {
  if (m_ownerEvent == 0 || eventType != "xcb_generic_event_t") {
    return false;
  }
  // The top bit says that another client sent the event, which changes nothing here.
  constexpr std::uint8_t typeBits = 0x7f;
  const auto *event = static_cast<const xcb_generic_event_t *>(message);
  if ((event->response_type & typeBits) != m_ownerEvent) {
    return false;
  }
  const bool compositing = hasOwner();
  if (compositing != m_compositing) {
    m_compositing = compositing;
    if (m_handler) {
      m_handler();
    }
  }
  return false;
}

bool CompositorWatch::hasOwner() const {
  const auto cookie = xcb_get_selection_owner(m_connection, m_selection);
  const XcbReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
  return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace morvo
