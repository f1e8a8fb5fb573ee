#include "pet/stage/Easing.h"

namespace morvo {

double eased(Easing easing, double time) {
  switch (easing) {
  case Easing::easeIn:
    return time * time;
  case Easing::easeOut:
    return 1 - (1 - time) * (1 - time);
  case Easing::easeInOut:
    return time * time * (3 - 2 * time);
  case Easing::linear:
    break;
  }
  return time;
}

} // namespace morvo
