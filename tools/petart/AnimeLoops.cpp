#include "AnimeLoops.h"

#include "Motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::AnimeLoops {
namespace {

using Motion::wave;
using Kind = AnimePose::Floater::Kind;

/// The body keeps its volume: what it loses in height it gains in width.
void squash(AnimePose &pose, double height) {
  pose.height *= height;
  pose.width /= std::sqrt(height);
}

/// Letters that rise from the sleeper.
void snore(AnimePose &pose, double phase) {
  constexpr int letters = 3;
  for (int letter = 0; letter < letters; ++letter) {
    const double age = Motion::ageInLoop(phase, static_cast<double>(letter) / letters, 1);
    pose.floaters.push_back({.kind = Kind::snore,
                             .place = {322 + 84 * age + 7 * wave(age), 154 - 108 * age},
                             .size = 13 + 25 * age,
                             .opacity = std::min({1.0, 6 * age, 3.5 * (1 - age)}),
                             .turn = -10 + 8 * wave(age, 0.3)});
  }
}

/// What she types flies off, to either side in turn.
void program(AnimePose &pose, double phase) {
  constexpr int signs = 4;
  for (int sign = 0; sign < signs; ++sign) {
    const double age = Motion::ageInLoop(phase, static_cast<double>(sign) / signs, 0.6);
    const double side = sign % 2 == 0 ? -1 : 1;
    if (age > 0 && age < 1) {
      pose.floaters.push_back({.kind = sign % 2 == 0 ? Kind::code : Kind::spark,
                               .place = {240 + side * (92 + 62 * std::sqrt(age)), 436 - 130 * age},
                               .size = sign % 2 == 0 ? 46.0 : 34.0,
                               .opacity = std::min({1.0, 6 * age, 3 * (1 - age)}),
                               .turn = side * 24 * age});
    }
  }
}

/// One foot of a walk: it glides back on the ground for half of the time and swings forward over
/// it in the other half.
AnimePose::Leg step(double phase) {
  constexpr double stride = 30;
  const double at = phase - std::floor(phase);
  AnimePose::Leg leg;
  if (at < 0.5) {
    leg.foot = {stride * (1 - 4 * at), 0};
    return leg;
  }
  const double swing = (at - 0.5) * 2;
  leg.foot = {stride * (-1 + 2 * Motion::ramp(swing, 0, 1)),
              -26 * std::sin(std::numbers::pi * swing)};
  leg.turn = 26 * (Motion::bump(swing, 0, 0.55) - 0.7 * Motion::bump(swing, 0.6, 1));
  leg.knee = 0.6;
  return leg;
}

} // namespace

AnimePose idle(double phase) {
  AnimePose pose;
  // Two breaths to a loop, one shift of weight.
  const double breath = wave(2 * phase);
  pose.breath = breath;
  squash(pose, 1 + 0.008 * breath);
  pose.headShift.setY(-2.6 * wave(2 * phase, -0.06));
  pose.sway = 3.2 * wave(phase);
  pose.lean = -1.2 * wave(phase);
  pose.headTilt = 2.6 * wave(phase, -0.08);
  pose.turn = 0.16 * wave(phase, 0.1);
  for (auto &arm : pose.arms) {
    arm.hand += QPointF(1.6 * wave(2 * phase, -0.1), -2.2 * wave(2 * phase, -0.1));
  }
  pose.eyes.open = 1 - std::max(Motion::blink(phase, 0.2, 0.1), Motion::blink(phase, 0.64, 0.1));
  pose.follow.ears = -12 * Motion::bump(phase, 0.78, 0.84) - 10 * Motion::bump(phase, 0.86, 0.92);
  pose.follow.crest = 5 * wave(2 * phase, -0.2);
  return pose;
}

AnimePose sleep(double phase) {
  AnimePose pose;
  // The loop closes where she has breathed in and nothing moves.
  constexpr double fullChest = 0.25;
  const double breath = wave(phase, fullChest);
  pose.sitting = true;
  pose.prop = AnimePose::Prop::cushion;
  pose.breath = breath;
  squash(pose, 1 + 0.012 * breath);
  pose.headTilt = 9 + 1.6 * wave(phase, fullChest - 0.1);
  pose.headShift = {5, 11 - 3.4 * wave(phase, fullChest - 0.06)};
  pose.pitch = 0.6;
  pose.eyes.open = 0;
  pose.brows = -3;
  pose.mouth.open = 0.14 + 0.1 * (1 + wave(phase, fullChest - 0.1)) / 2;
  pose.mouth.width = 0.5;
  pose.mouth.round = 1;
  pose.blush = 0.85;
  for (auto &arm : pose.arms) {
    arm.hand = {-14, 62 - 1.5 * breath};
    arm.elbow = 0.4;
  }
  pose.legs[0].turn = -6 + 3 * breath;
  pose.legs[1].turn = 6 - 3 * breath;
  pose.follow.ears = 24 + 2 * wave(phase, fullChest - 0.2);
  pose.follow.crest = 26 + 4 * wave(phase, fullChest - 0.15);
  snore(pose, phase);
  return pose;
}

AnimePose watching(double phase) {
  AnimePose pose;
  // The gaze rests on one side, then on the other; eyes first, then the head, then the body.
  const auto rest = [phase](double late) {
    return std::clamp(1.9 * wave(phase, -late), -1.0, 1.0);
  };
  const double body = Motion::ramp(rest(0.07), -1, 1) * 2 - 1;
  pose.eyes.gaze = {0.95 * rest(0), 0.1};
  pose.eyes.size = 1.05;
  pose.turn = 0.75 * (Motion::ramp(rest(0.035), -1, 1) * 2 - 1);
  pose.headTilt = 5 * body;
  pose.lean = 3 * body;
  pose.sway = 6 * body;
  squash(pose, 1 + 0.01 * wave(2 * phase));
  pose.headShift = {2 * body, 3 - 2 * wave(2 * phase, -0.1)};
  pose.brows = 5;
  pose.legs[0].foot.setY(-7 * std::max(0.0, body));
  pose.legs[0].turn = 10 * std::max(0.0, body);
  pose.legs[1].foot.setY(-7 * std::max(0.0, -body));
  pose.legs[1].turn = -10 * std::max(0.0, -body);
  for (auto &arm : pose.arms) {
    arm.layer = AnimePose::Layer::behind;
    arm.hand = {-14, 58};
    arm.elbow = 0.75;
  }
  pose.eyes.open = 1 - Motion::blink(phase, 0.46, 0.1) - Motion::blink(phase, 0.94, 0.055);
  pose.follow.ears = -6 + 8 * rest(0.02);
  return pose;
}

AnimePose code(double phase) {
  AnimePose pose;
  pose.sitting = true;
  pose.prop = AnimePose::Prop::laptop;
  // She nods to what the headphones play, and types in bursts.
  const double beat = wave(4 * phase);
  const double typing = Motion::plateau(phase, 0.02, 0.06, 0.66, 0.72);
  const double proud = Motion::plateau(phase, 0.72, 0.78, 0.92, 0.98);
  squash(pose, 1 + 0.008 * beat);
  pose.headShift.setY(4 + 3.2 * wave(4 * phase, -0.05) - 5 * proud);
  pose.headTilt = 4 * wave(2 * phase, -0.04) * (1 - proud) - 6 * proud;
  pose.lean = 1.4 * wave(2 * phase);
  pose.pitch = 0.8 - 1.1 * proud;
  pose.eyes.gaze = {0.15 * wave(2 * phase) * (1 - proud), 0.9 - 0.9 * proud};
  pose.eyes.open = 0.82 + 0.18 * proud - 0.8 * Motion::blink(phase, 0.36, 0.1);
  pose.eyes.star = proud;
  pose.mouth.open = 0.5 * proud;
  pose.brows = 6 * proud;
  pose.browTilt = 6 * typing;
  for (std::size_t index = 0; index < pose.arms.size(); ++index) {
    auto &arm = pose.arms.at(index);
    const double key = wave(8 * phase, 0.5 * static_cast<double>(index));
    arm.hand = {-2 + 2 * key * typing, 50 - 7 * key * typing};
    arm.elbow = 0.5;
  }
  pose.legs[0].turn = -5 * std::max(0.0, beat);
  pose.legs[1].turn = 5 * std::max(0.0, -beat);
  pose.glow = 0.5 + 0.5 * wave(4 * phase, 0.1);
  pose.follow.ears = 4 * wave(4 * phase, -0.1) - 8 * proud;
  program(pose, phase);
  return pose;
}

AnimePose walk(double phase) {
  AnimePose pose;
  pose.turn = 0.85;
  pose.eyes.gaze = {0.5, 0};
  pose.lean = 6.5 + 1.5 * wave(2 * phase);
  pose.legs[0] = step(phase);
  pose.legs[1] = step(phase + 0.5);
  // Her feet pass under the body, one before the other.
  pose.legs[0].foot += QPointF(14, 0);
  pose.legs[1].foot -= QPointF(14, 0);
  pose.crouch = 5.5 * wave(2 * phase, 0.02) + 3;
  pose.headTilt = -3 + 2.5 * wave(phase, -0.1);
  pose.headShift.setY(2.5 * wave(2 * phase, -0.12));
  const double swing = std::cos(2 * std::numbers::pi * phase);
  pose.arms[0].hand = {24 + 26 * swing, 62 - 10 * std::abs(swing)};
  pose.arms[1].hand = {24 + 26 * swing, 62 - 10 * std::abs(swing)};
  pose.mouth.open = 0.35;
  pose.mouth.width = 0.9;
  pose.follow.tail = 16;
  pose.follow.tip = 14;
  pose.follow.locks = -7;
  pose.follow.crest = -14;
  pose.follow.ears = 3 * wave(2 * phase, -0.1);
  return pose;
}

AnimePose carried(double phase) {
  AnimePose pose;
  constexpr double hoodHeight = 300;
  constexpr double dangling = -20;
  pose.pivot = hoodHeight;
  pose.shift.setY(dangling);
  pose.tilt = 5 * wave(phase);
  squash(pose, 1.035 + 0.01 * wave(2 * phase));
  pose.headTilt = -4 * wave(phase, -0.1);
  pose.headShift.setY(5);
  pose.pitch = -0.7;
  pose.eyes.gaze = {0.4 * wave(phase), -0.8};
  pose.eyes.size = 1.04;
  pose.eyes.open = 1 - Motion::blink(phase, 0.4, 0.2);
  pose.brows = 7;
  pose.browTilt = -12;
  pose.mouth.open = 0.34 + 0.12 * wave(2 * phase);
  pose.mouth.width = 0.75;
  pose.mouth.round = 0.8;
  for (std::size_t index = 0; index < pose.arms.size(); ++index) {
    auto &arm = pose.arms.at(index);
    const double flap = wave(2 * phase, 0.5 * static_cast<double>(index));
    arm.hand = {66, 34 + 16 * flap};
    arm.elbow = 0.3;
    auto &leg = pose.legs.at(index);
    leg.foot = {10 * wave(2 * phase, 0.5 * static_cast<double>(index) - 0.1), -5 - 9 * flap};
    leg.turn = 22 * flap + (index == 0 ? -16 : 16);
    leg.knee = 0.7;
  }
  pose.follow.ears = 14;
  return pose;
}

AnimePose tossed(double phase) {
  AnimePose pose;
  constexpr double middle = 190;
  pose.pivot = middle;
  pose.shift = {0, -22 + 5 * wave(phase)};
  pose.tilt = 11 * wave(phase);
  squash(pose, 0.97 + 0.02 * wave(2 * phase));
  pose.headTilt = 7 * wave(phase, -0.12);
  pose.eyes.wince = true;
  pose.mouth.open = 0.8 + 0.15 * wave(2 * phase);
  pose.mouth.width = 0.95;
  pose.mouth.smile = 0.2;
  pose.brows = 4;
  pose.browTilt = -8;
  for (std::size_t index = 0; index < pose.arms.size(); ++index) {
    const double shift = 0.5 * static_cast<double>(index);
    auto &arm = pose.arms.at(index);
    arm.layer = AnimePose::Layer::head;
    arm.shape = AnimePose::Hand::open;
    arm.hand = {78, -34 + 16 * wave(2 * phase, shift)};
    arm.elbow = 0.25;
    auto &leg = pose.legs.at(index);
    const double side = index == 0 ? -1 : 1;
    leg.foot = {side * 22, -14 + 12 * wave(2 * phase, shift + 0.2)};
    leg.turn = side * (24 + 14 * wave(2 * phase, shift));
  }
  constexpr int stars = 4;
  for (int star = 0; star < stars; ++star) {
    const double place = 2 * std::numbers::pi * (phase + static_cast<double>(star) / stars);
    const double depth = std::sin(place);
    pose.floaters.push_back({.kind = Kind::star,
                             .place = {240 + 140 * std::cos(place), 74 + 26 * depth},
                             .size = 30 + 9 * depth,
                             .opacity = 0.75 + 0.25 * depth,
                             .turn = 360 * phase,
                             .behind = depth < 0});
  }
  pose.follow.lift = 8;
  pose.follow.ears = 16;
  return pose;
}

} // namespace morvo::AnimeLoops
