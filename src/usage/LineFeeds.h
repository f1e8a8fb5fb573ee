#pragma once

#include "usage/OpenLog.h"

#include <cstdint>
#include <optional>

/// Finds line ends in a log without holding more than a block of it.
namespace morvo::LineFeeds {

/// The offset behind the last line feed between the two; `begin` when there is none. Nothing when
/// reading fails.
[[nodiscard]] std::optional<std::int64_t> behindLast(const OpenLog &log, std::int64_t begin,
                                                     std::int64_t end);

/// The offset behind the first line feed between the two; `begin` when there is none. Nothing when
/// reading fails.
[[nodiscard]] std::optional<std::int64_t> behindFirst(const OpenLog &log, std::int64_t begin,
                                                      std::int64_t end);

} // namespace morvo::LineFeeds
