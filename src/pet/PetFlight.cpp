#include "pet/PetFlight.h"

#include <cmath>

namespace morvo::PetFlight {
namespace {

constexpr double stepsPerSecond = 60;
constexpr double leastThrow = 200;
/// Gained in each step.
constexpr double fall = 40;
/// What walls and ceiling leave of the speed against them, turned round.
constexpr double wallBounce = -0.6;
constexpr double floorBounce = -0.5;
/// What each step on the floor leaves of the sideways speed.
constexpr double floorSlide = 0.7;
/// A bounce off the floor slower than this is none.
constexpr double leastBounce = 70;
constexpr double restingSpeed = 8;
constexpr double restingHeight = 1;

} // namespace

bool isThrow(QPointF velocity) {
  const double speed = std::hypot(velocity.x(), velocity.y());
  return std::isfinite(speed) && speed > leastThrow;
}

Step physicsStep(const QRect &panel, QPointF velocity, const QRect &workArea) {
  double dx = velocity.x();
  double dy = velocity.y() + fall;
  double x = panel.x() + dx / stepsPerSecond;
  double y = panel.y() + dy / stepsPerSecond;
  const double leftmost = workArea.x();
  const double rightmost = workArea.x() + workArea.width() - panel.width();
  const double highest = workArea.y();
  const double lowest = workArea.y() + workArea.height() - panel.height();
  if (x < leftmost) {
    x = leftmost;
    dx *= wallBounce;
  }
  if (x > rightmost) {
    x = rightmost;
    dx *= wallBounce;
  }
  if (y < highest) {
    y = highest;
    dy *= wallBounce;
  }
  if (y > lowest) {
    y = lowest;
    dx *= floorSlide;
    dy *= floorBounce;
    if (std::abs(dy) < leastBounce) {
      dy = 0;
    }
  }
  const bool isAtRest =
      y >= lowest - restingHeight && std::abs(dx) < restingSpeed && std::abs(dy) < restingSpeed;
  return {QPoint(qRound(x), qRound(y)), {dx, dy}, isAtRest};
}

} // namespace morvo::PetFlight
