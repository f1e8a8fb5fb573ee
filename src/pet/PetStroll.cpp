#include "pet/PetStroll.h"

#include <algorithm>
#include <cmath>

namespace morvo::PetStroll {
namespace {

/// With more than this on either side the pet may turn to the smaller room.
constexpr double roomToChoose = 180;
/// Kept free at the end of the way.
constexpr double gap = 8;
constexpr double shortestWish = 140;
constexpr double longestWish = 380;
constexpr double leastStroll = 60;
constexpr double leastWalk = 8;
constexpr double shortestTime = 1.2;
constexpr double longestTime = 6;

} // namespace

std::optional<double> distance(const QRect &panel, const QRect &workArea, RandomSource &random) {
  const double left = panel.x() - workArea.x();
  const double right = workArea.x() + workArea.width() - panel.width() - panel.x();
  double direction = left <= right ? 1 : -1;
  if (std::min(left, right) > roomToChoose && random.below(2) == 0) {
    direction = -direction;
  }
  const double room = std::max((direction > 0 ? right : left) - gap, 0.0);
  const double length = std::min(random.uniform(shortestWish, longestWish), room);
  return length > leastStroll ? std::optional(direction * length) : std::nullopt;
}

bool isWalk(double distance) { return std::abs(distance) > leastWalk; }

Duration duration(double distance, double speed) {
  return seconds(std::clamp(std::abs(distance) / speed, shortestTime, longestTime));
}

double ease(double t) {
  if (t >= 1) {
    return 1;
  }
  const double left = 2 - 2 * t;
  return t < 0.5 ? 2 * t * t : 1 - left * left / 2;
}

} // namespace morvo::PetStroll
