#include "MorvoGestures.h"

#include "Motion.h"
#include "PetArt.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::MorvoGestures {
namespace {

using namespace Motion;

constexpr double headHeight = 312;
/// How near to the upper border the water may come.
constexpr double waterMargin = 44;

double headTop(const MorvoPose &pose) {
  return baseLine + pose.shift.y() - headHeight * pose.heightScale;
}

} // namespace

void squash(MorvoPose &pose, double height) {
  pose.heightScale *= height;
  pose.widthScale *= 1 / std::sqrt(height);
}

double breath(double phase) { return (1 - wave(phase, 0.25)) / 2; }

void shut(MorvoPose &pose, double part) { pose.eyesOpen *= 1 - part; }

void addBubble(MorvoPose &pose, double age, QPointF from, QPointF to, double size) {
  if (age <= 0 || age >= 1) {
    return;
  }
  const QPointF swing(7 * wave(age * 1.5), 0);
  const double grown = 0.45 + 0.55 * ramp(age, 0, 0.5);
  // A bubble does not fade, it bursts: a little larger, and gone.
  const double burst = ramp(age, 0.9, 1);
  pose.bubbles.push_back({from + (to - from) * age + swing, size * (grown + 0.25 * burst),
                          std::min(1.0, age * 8) * (1 - burst)});
}

void setSpout(MorvoPose &pose, double height) {
  pose.spout = std::min(height, headTop(pose) - waterMargin);
}

void addDrops(MorvoPose &pose, double phase, double from, double to) {
  constexpr int count = 18;
  constexpr double life = 0.3;
  constexpr double fall = 330;
  for (int index = 0; index < count; ++index) {
    const double birth = mix(from, to - life, static_cast<double>(index) / (count - 1));
    const double since = age(phase, birth, life);
    if (since <= 0 || since >= 1) {
      continue;
    }
    const double side = index % 2 == 0 ? -1 : 1;
    const double reach = 62 + 31.0 * (index % 4);
    const double rise = 26 + 9.0 * (index % 3);
    const QPointF centre(242 + side * (14 + reach * since),
                         waterMargin + 12 - rise * since + fall * since * since);
    const double turn = std::atan2(-side * reach, fall * 2 * since - rise) * 180 / std::numbers::pi;
    pose.drops.push_back({centre, 27.0 + 5 * (index % 3),
                          std::min(1.0, 6 * since) * std::min(1.0, 4 * (1 - since)), turn});
  }
}

} // namespace morvo::MorvoGestures
