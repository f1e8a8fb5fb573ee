#include "MorvoOverlap.h"

#include "Spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::MorvoOverlap {
namespace {

constexpr double degree = std::numbers::pi / 180;
constexpr double headHeight = 320;

constexpr Spring earSpring{.frequency = 2.8, .damping = 0.32};
constexpr Spring armSpring{.frequency = 2.3, .damping = 0.42};
constexpr Spring tailSpring{.frequency = 1.9, .damping = 0.36};
constexpr Spring stalkSpring{.frequency = 2.1, .damping = 0.24};

/// How the head goes over a set, in pixels.
std::vector<double> headUpAndDown(const std::vector<MorvoPose> &poses) {
  std::vector<double> way;
  way.reserve(poses.size());
  for (const MorvoPose &pose : poses) {
    way.push_back(pose.shift.y() - headHeight * (pose.heightScale - 1) + pose.pitch);
  }
  return way;
}

std::vector<double> headSideways(const std::vector<MorvoPose> &poses) {
  std::vector<double> way;
  way.reserve(poses.size());
  for (const MorvoPose &pose : poses) {
    // A tumble has no sideways way to follow.
    const double tilt = std::clamp(pose.tilt, -30.0, 30.0);
    way.push_back(pose.shift.x() + (headHeight - pose.pivot) * std::sin(tilt * degree) +
                  headHeight * pose.lean + 0.9 * pose.yaw);
  }
  return way;
}

double within(double value, double most) { return std::clamp(value, -most, most); }

} // namespace

void apply(std::vector<MorvoPose> &poses, bool loop) {
  const std::vector<double> down = headUpAndDown(poses);
  const std::vector<double> right = headSideways(poses);
  const auto earDown = earSpring.lag(down, loop);
  const auto earRight = earSpring.lag(right, loop);
  const auto armDown = armSpring.lag(down, loop);
  const auto tailDown = tailSpring.lag(down, loop);
  const auto tailRight = tailSpring.lag(right, loop);
  const auto stalkDown = stalkSpring.lag(down, loop);
  const auto stalkRight = stalkSpring.lag(right, loop);
  for (std::size_t at = 0; at < poses.size(); ++at) {
    MorvoPose &pose = poses[at];
    // A fin that stays below is turned further down, whichever side it is on.
    const double ear = within(0.62 * earDown[at], 38);
    pose.leftEar.turn += ear - within(0.5 * earRight[at], 16);
    pose.rightEar.turn += ear + within(0.5 * earRight[at], 16);
    pose.leftEar.bend += 0.7 * ear;
    pose.rightEar.bend += 0.7 * ear;
    const double arm = within(0.42 * armDown[at], 34);
    pose.leftArm.turn += arm;
    pose.rightArm.turn += arm;
    pose.tail -= within(0.5 * tailDown[at] - 0.3 * tailRight[at], 34);
    pose.tailWhip -= within(0.4 * tailDown[at], 30);
    pose.stalk += within(0.5 * stalkRight[at] + 0.3 * stalkDown[at], 34);
    pose.stalkWhip += within(0.45 * stalkDown[at] + 0.25 * stalkRight[at], 40);
  }
}

} // namespace morvo::MorvoOverlap
