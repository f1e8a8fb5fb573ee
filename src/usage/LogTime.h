#pragma once

#include "base/Time.h"

#include <optional>
#include <string_view>

/// The time stamps in agents' logs.
namespace morvo::LogTime {

/// The time that an ISO-8601 text of whole seconds with a zone tells. Of any other text the first
/// 19 characters are read as universal time: so a fraction of a second is dropped, and so is a zone
/// behind one. Nothing when that is no date either.
[[nodiscard]] std::optional<WallTime> parse(std::string_view text);

/// So many hours before; the ends of the calendar for what lies beyond them.
[[nodiscard]] WallTime hoursBefore(WallTime now, double hours);

} // namespace morvo::LogTime
