#include "platform/linux/X11Atom.h"

#include "platform/linux/XcbReply.h"

namespace morvo::X11Atom {

xcb_atom_t named(xcb_connection_t *connection, const QByteArray &name) {
  const auto cookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace morvo::X11Atom
