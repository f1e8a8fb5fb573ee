#include "pet/PetPalette.h"

namespace morvo::PetPalette {

const AdaptiveColor &abyss() {
  static const AdaptiveColor color{QColor(0xfff6f9fc), QColor(0xff101b2d)};
  return color;
}

const AdaptiveColor &foam() {
  static const AdaptiveColor color{QColor(0xff16243a), QColor(0xffeaf4fb)};
  return color;
}

const AdaptiveColor &morvoBody() {
  static const AdaptiveColor color{QColor(0xff2a6fd6), QColor(0xff6ab4ff)};
  return color;
}

const AdaptiveColor &krill() {
  static const AdaptiveColor color{QColor(0xffad5509), QColor(0xffffb070)};
  return color;
}

const AdaptiveColor &coral() {
  static const AdaptiveColor color{QColor(0xffd1344f), QColor(0xffff7b86)};
  return color;
}

const AdaptiveColor &accent(const QString &mood, const AdaptiveColor &theme) {
  if (mood == QStringLiteral("hungry")) {
    return krill();
  }
  if (mood == QStringLiteral("lonely") || mood == QStringLiteral("sleepy") ||
      mood == QStringLiteral("dreamy")) {
    return morvoBody();
  }
  return mood == QStringLiteral("mischievous") ? coral() : theme;
}

} // namespace morvo::PetPalette
