#include "pet/PetBehaviorMode.h"

namespace morvo {

QString rawValue(PetBehaviorMode mode) {
  switch (mode) {
  case PetBehaviorMode::playful:
    return QStringLiteral("playful");
  case PetBehaviorMode::rest:
    return QStringLiteral("rest");
  case PetBehaviorMode::natural:
    break;
  }
  return QStringLiteral("natural");
}

PetBehaviorMode petBehaviorMode(const QString &raw) {
  for (const PetBehaviorMode mode : {PetBehaviorMode::playful, PetBehaviorMode::rest}) {
    if (raw == rawValue(mode)) {
      return mode;
    }
  }
  return PetBehaviorMode::natural;
}

} // namespace morvo
