#pragma once

namespace morvo {

/// How an action's progress runs over its time.
enum class Easing { linear, easeIn, easeOut, easeInOut };

/// The progress at `time`, both from 0 to 1, with 0 and 1 kept exactly. In and out are quadratic,
/// in-out is the cubic that leaves and arrives at rest.
[[nodiscard]] double eased(Easing easing, double time);

} // namespace morvo
