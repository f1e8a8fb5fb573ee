#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

/// Names the X server knows by number.
namespace morvo::X11Atom {

/// The atom of that name, made when the server has none yet. One round trip. `XCB_ATOM_NONE` when
/// the connection is broken.
[[nodiscard]] xcb_atom_t named(xcb_connection_t *connection, const QByteArray &name);

} // namespace morvo::X11Atom
