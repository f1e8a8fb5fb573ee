#include "panels/Contrast.h"

#include <algorithm>
#include <cmath>

namespace morvo::Contrast {
namespace {

/// The steps in which a text is made stronger.
constexpr int steps = 50;

const QColor white(0xff, 0xff, 0xff);
const QColor ink(0x0b, 0x16, 0x22);

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor mixed(const QColor &from, const QColor &to, double share) {
  const auto channel = [share](float a, float b) {
    return static_cast<float>(a + (b - a) * share);
  };
  return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                          channel(from.blueF(), to.blueF()));
}

QColor opaque(QColor color) {
  color.setAlphaF(1);
  return color;
}

} // namespace

double ratio(const QColor &one, const QColor &other) {
  constexpr double flare = 0.05;
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + flare) / (darker + flare);
}

QColor over(const QColor &color, const QColor &ground) {
  return mixed(ground, opaque(color), color.alphaF());
}

QColor readable(const QColor &color, const QColor &ground, const QColor &strong) {
  const auto isRead = [&ground](const QColor &text) {
    // What is drawn has eight bits a channel.
    return ratio(QColor(text.rgb()), QColor(ground.rgb())) >= leastForText;
  };
  const double opacity = color.alphaF();
  for (int step = 0; step <= steps; ++step) {
    const QColor text =
        mixed(ground, opaque(color), opacity + (1 - opacity) * static_cast<double>(step) / steps);
    if (isRead(text)) {
      return text;
    }
  }
  for (int step = 1; step < steps; ++step) {
    const QColor text = mixed(opaque(color), strong, static_cast<double>(step) / steps);
    if (isRead(text)) {
      return text;
    }
  }
  return strong;
}

QColor textOn(const QColor &ground) {
  return ratio(white, ground) >= ratio(ink, ground) ? white : ink;
}

} // namespace morvo::Contrast
