#include "Curve.h"
#include "MorvoActions.h"
#include "MorvoGestures.h"
#include "Motion.h"

#include <algorithm>
#include <array>

namespace morvo::MorvoActions {

using namespace Motion;
using namespace MorvoGestures;

MorvoPose idle(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  const double air = breath(phase);
  pose.heightScale = 1 + 0.027 * air;
  pose.widthScale = 1 + 0.009 * air;
  // It wonders about its own light for a moment.
  static const Curve wonder{{0, 0}, {0.36, 0}, {0.44, 1}, {0.62, 1}, {0.72, 0}};
  const double up = wonder.at(phase);
  pose.gaze = QPointF(7, -8) * up;
  pose.yaw += 5 * up;
  pose.pitch = -3 * up;
  pose.tilt = 1.2 * up;
  shut(pose, std::max(blink(phase, 0.2, 0.1), blink(phase, 0.7, 0.1)));
  pose.tail += 9 * wave(phase, -0.1) - 9 * wave(0, -0.1);
  pose.tailWhip += 7 * wave(phase, -0.22) - 7 * wave(0, -0.22);
  const double lateAir = breath(phase - 0.06) - breath(-0.06);
  pose.leftArm.turn -= 9 * lateAir;
  pose.rightArm.turn -= 9 * lateAir;
  pose.leftEar.turn -= 4 * lateAir + 15 * bump(phase, 0.5, 0.56) - 6 * bump(phase, 0.56, 0.6);
  pose.rightEar.turn -= 4 * lateAir;
  pose.glow = 0.6 + 0.16 * air;
  pose.lantern = 0.8 + 0.12 * air + 0.08 * up;
  addBubble(pose, age(phase, 0.5, 0.42), {322, 354}, {470, 214}, 19);
  return pose;
}

MorvoPose sleep(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  const double air = breath(phase);
  squash(pose, 0.87 + 0.035 * air);
  pose.tilt = -3 + 1.2 * wave(phase, -0.1);
  pose.yaw = 8;
  pose.pitch = 14;
  pose.eyesOpen = 0;
  pose.blush = 0.75;
  pose.glow = 0.24 + 0.14 * air;
  pose.lantern = 0.26 + 0.14 * air;
  pose.leftEar = {98 - 5 * air, 34};
  pose.rightEar = {92 - 5 * air, 34};
  pose.leftArm = {160 - 3 * air, -18};
  pose.rightArm = {160 - 3 * air, -18};
  pose.tail = 34 + 4 * wave(phase, -0.2);
  pose.tailWhip = 74;
  pose.stalk = 128 + 4 * wave(phase, -0.15);
  pose.stalkWhip = 14;
  pose.mouthOpen = 0.12 + 0.1 * air;
  pose.mouthRound = 1;
  // The bubble at its mouth breathes with it.
  pose.bubbles.push_back({{306 + 6 * air, 388 - 2 * air}, 15 + 32 * air, 0.95});
  constexpr int letters = 3;
  for (int index = 0; index < letters; ++index) {
    const double since = ageInLoop(phase, static_cast<double>(index) / letters, 1);
    pose.snores.push_back({{204 - 116 * since + 8 * wave(since * 1.3), 176 - 128 * since},
                           18 + 26 * since,
                           std::min({1.0, 6 * since, 4 * (1 - since)}),
                           -10 + 8 * wave(since)});
  }
  return pose;
}

MorvoPose watching(double phase, const MorvoPose &rest) {
  static const Curve look{
      {0, -1}, {0.1, -1}, {0.24, 1, Curve::Ease::back}, {0.58, 1}, {0.72, -1, Curve::Ease::back},
      {1, -1}};
  MorvoPose pose = rest;
  // The eyes lead, the head follows.
  const double eyes = look.inLoop(phase + 0.035);
  const double head = look.inLoop(phase);
  squash(pose, 1.02 + 0.012 * wave(phase * 2, 0.25) - 0.03 * bump(phase, 0.08, 0.24) -
                   0.03 * bump(phase, 0.56, 0.72));
  pose.gaze = QPointF(9 * eyes, -2);
  pose.yaw = 9 + 19 * head;
  pose.pitch = -3;
  pose.tilt = 3 * head;
  pose.lean = 0.02 * head;
  pose.eyeScale = 1.05;
  shut(pose, std::max(blink(phase, 0.11, 0.09), blink(phase, 0.6, 0.09)));
  pose.leftEar.turn = 36 - 5 * head;
  pose.rightEar.turn = 36 + 5 * head;
  pose.leftArm.turn = 128 + 5 * wave(phase, 0.25);
  pose.rightArm.turn = 128 + 5 * wave(phase, 0.25);
  pose.tail += 12 * wave(phase * 2, 0.25);
  pose.stalk = 58 + 14 * head;
  pose.glow = 0.75;
  pose.lantern = 0.95 + 0.05 * wave(phase * 2, 0.25);
  pose.smile = 0.6;
  return pose;
}

MorvoPose code(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  constexpr int taps = 6;
  const double left = std::max(0.0, wave(phase * taps));
  const double right = std::max(0.0, wave(phase * taps, 0.5));
  const double air = breath(phase);
  // A pause to think, with a look at the lantern.
  const double think = plateau(phase, 0.58, 0.64, 0.8, 0.88);
  const double busy = 1 - think;
  squash(pose, 0.975 + 0.014 * air - 0.008 * busy * (left + right) + 0.02 * think);
  pose.yaw = 7 + 10 * think;
  pose.pitch = 12 - 14 * think;
  pose.gaze = QPointF(6 * wave(phase * 3) * busy + 6 * think, 9 * busy - 9 * think);
  pose.tilt = -1.5 * busy + 2.5 * think;
  shut(pose, std::max({blink(phase, 0.24, 0.1), blink(phase, 0.58, 0.1), blink(phase, 0.84, 0.1)}));
  pose.brow = 0.55 * busy;
  pose.browLift = 7 * think;
  pose.smile = 0.75;
  pose.leftArm = {208 - 20 * left * busy, 16};
  pose.rightArm = {206 - 20 * right * busy - 120 * think, 16 - 50 * think};
  pose.leftEar.turn = 58 + 5 * left * busy - 10 * think;
  pose.rightEar.turn = 58 + 5 * right * busy - 10 * think;
  pose.stalk = 82 - 18 * think;
  pose.stalkWhip = 46;
  pose.tail += 10 * wave(phase * 2, -0.1);
  pose.glow = 0.6 + 0.1 * think;
  pose.lantern = 0.7 + 0.3 * think;
  pose.shell = 1;
  pose.typing = 0.5 + 0.5 * busy * wave(phase * 3);
  addBubble(pose, ageInLoop(phase, 0.05, 0.5), {140, 412}, {62, 250}, 19);
  addBubble(pose, ageInLoop(phase, 0.4, 0.5), {384, 412}, {458, 262}, 16);
  return pose;
}

MorvoPose droop(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  // A slow sigh: in by little, out for long.
  static const Curve sigh{{0, 0}, {0.3, 1}, {0.36, 1}, {0.62, -0.7}, {1, 0}};
  const double air = sigh.at(phase);
  const double glance = plateau(phase, 0.7, 0.76, 0.88, 0.96);
  squash(pose, 0.935 + 0.022 * air);
  pose.tilt = -2 + 0.8 * wave(phase);
  pose.yaw = 4 - 10 * plateau(phase, 0.1, 0.2, 0.56, 0.7) + 5 * glance;
  pose.pitch = 15 - 9 * glance;
  pose.gaze = QPointF(-4, 9) * (1 - glance) + QPointF(2, -6) * glance;
  pose.eyesOpen = 0.8 - 0.12 * air + 0.2 * glance;
  shut(pose, blink(phase, 0.68, 0.12));
  pose.brow = -1;
  pose.browLift = 2 + 4 * glance;
  pose.smile = -0.75;
  pose.blush = 0.25;
  pose.leftEar = {120 - 7 * air - 10 * glance, 30};
  pose.rightEar = {120 - 7 * air - 10 * glance, 30};
  pose.leftArm = {166 - 4 * air, -10};
  pose.rightArm = {166 - 4 * air, -10};
  pose.tail = 16 + 4 * wave(phase, -0.15);
  pose.tailWhip = -14;
  pose.stalk = 96 + 3 * wave(phase, -0.1);
  pose.stalkWhip = 58 - 10 * glance;
  pose.glow = 0.3 + 0.08 * air;
  pose.lantern = 0.34 + 0.12 * glance;
  addBubble(pose, age(phase, 0.4, 0.5), {292, 372}, {392, 238}, 16);
  return pose;
}

} // namespace morvo::MorvoActions
