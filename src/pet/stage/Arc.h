#pragma once

namespace morvo {

/// Which way round a rotation to an angle goes: at most half a turn, or straight from number to
/// number, whole turns included.
enum class Arc { shortest, direct };

} // namespace morvo
