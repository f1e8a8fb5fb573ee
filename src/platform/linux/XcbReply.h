#pragma once

#include <cstdlib>
#include <memory>

namespace morvo {

/// xcb hands its replies over from malloc.
struct FreeXcbReply {
  void operator()(void *reply) const { std::free(reply); }
};

/// An owned reply of the X server; null when the request failed.
template <typename T> using XcbReply = std::unique_ptr<T, FreeXcbReply>;

} // namespace morvo
