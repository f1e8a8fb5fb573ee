#include "pet/ProceduralGesture.h"

namespace morvo {

QString rawValue(ProceduralGesture gesture) {
  switch (gesture) {
  case ProceduralGesture::sway:
    return QStringLiteral("sway");
  case ProceduralGesture::perk:
    return QStringLiteral("perk");
  case ProceduralGesture::stretch:
    return QStringLiteral("stretch");
  case ProceduralGesture::bob:
    break;
  }
  return QStringLiteral("bob");
}

} // namespace morvo
