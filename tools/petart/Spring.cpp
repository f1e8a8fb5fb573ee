#include "Spring.h"

#include "Motion.h"

#include <cstddef>
#include <numbers>

namespace morvo {
namespace {

constexpr double frameTime = 1.0 / 24;
constexpr int steps = 16;
/// Rounds of a loop until nothing is left of how it began.
constexpr int rounds = 12;
/// The part of a one-shot's end in which what still swings is brought to rest.
constexpr double homeward = 0.2;

} // namespace

std::vector<double> Spring::follow(const std::vector<double> &driver, bool loop) const {
  const std::size_t count = driver.size();
  std::vector<double> result(count);
  if (count == 0) {
    return result;
  }
  const double pull = 2 * std::numbers::pi * frequency;
  const double step = frameTime / steps;
  double place = driver.front();
  double speed = 0;
  for (int round = 0; round < (loop ? rounds : 1); ++round) {
    for (std::size_t frame = 0; frame < count; ++frame) {
      result[frame] = place;
      const double from = driver[frame];
      const double to = frame + 1 < count ? driver[frame + 1] : driver[loop ? 0 : frame];
      for (int at = 1; at <= steps; ++at) {
        const double target = Motion::mix(from, to, static_cast<double>(at) / steps);
        speed += (pull * pull * (target - place) - 2 * damping * pull * speed) * step;
        place += speed * step;
      }
    }
  }
  if (!loop && count > 1) {
    for (std::size_t frame = 0; frame < count; ++frame) {
      const double phase = static_cast<double>(frame) / static_cast<double>(count - 1);
      result[frame] =
          Motion::mix(result[frame], driver[frame], Motion::ramp(phase, 1 - homeward, 1));
    }
    // To the bit, so that the end is the rest pose and nothing near it.
    result.back() = driver.back();
  }
  return result;
}

std::vector<double> Spring::lag(const std::vector<double> &driver, bool loop) const {
  std::vector<double> result = follow(driver, loop);
  for (std::size_t frame = 0; frame < result.size(); ++frame) {
    result[frame] -= driver[frame];
  }
  return result;
}

} // namespace morvo
