#include "MorvoActions.h"
#include "MorvoGestures.h"
#include "Motion.h"

#include <algorithm>

namespace morvo::MorvoActions {

using namespace Motion;
using namespace MorvoGestures;

MorvoPose walk(double phase, const MorvoPose &rest) {
  // One stroke a loop: fins and tail push, the body shoots forward, glides, and sinks.
  MorvoPose pose = rest;
  constexpr int strokes = 1;
  const double push = wave(phase * strokes);
  squash(pose, 0.965 + 0.04 * wave(phase * strokes, -0.1));
  pose.shift =
      QPointF(12 + 8 * wave(phase * strokes, -0.12), -2 - 7 * (1 + wave(phase * strokes, -0.2)));
  pose.pivot = 150;
  pose.tilt = 13 + 4 * wave(phase * strokes, 0.1);
  pose.lean = 0.03;
  pose.yaw = 29;
  pose.gaze = {5, -1};
  pose.pitch = -2;
  shut(pose, blink(phase, 0.3, 0.14));
  pose.mouthOpen = 0.22 + 0.12 * push;
  pose.leftArm = {118 + 40 * push, -40 * wave(phase * strokes, -0.16)};
  pose.rightArm = {112 + 30 * push, -30 * wave(phase * strokes, -0.16)};
  pose.leftEar = {84 + 9 * wave(phase * strokes, -0.2), 26};
  pose.rightEar = {16 - 9 * wave(phase * strokes, -0.2), -30};
  pose.tail = 40 + 36 * wave(phase * strokes, 0.08);
  pose.tailWhip = 46 * wave(phase * strokes, -0.14);
  pose.stalk = 22 + 6 * wave(phase * strokes, -0.2);
  pose.stalkWhip = 58;
  pose.glow = 0.7 + 0.12 * push;
  pose.lantern = 0.95;
  addBubble(pose, ageInLoop(phase, 0.1, 0.7), {126, 400}, {40, 292}, 20);
  addBubble(pose, ageInLoop(phase, 0.6, 0.7), {112, 430}, {34, 366}, 14);
  return pose;
}

MorvoPose carried(double phase, const MorvoPose &rest) {
  // It hangs by the scruff and swings.
  MorvoPose pose = rest;
  squash(pose, 1.05 + 0.012 * wave(phase * 2));
  pose.pivot = 330;
  pose.tilt = 5.5 * wave(phase);
  pose.shift = {0, -10};
  pose.yaw = 2 + 9 * wave(phase, -0.1);
  pose.pitch = -4;
  pose.gaze = QPointF(3 * wave(phase), -8 + 14 * plateau(phase, 0.42, 0.48, 0.8, 0.88));
  pose.eyeScale = 1.1;
  shut(pose, blink(phase, 0.36, 0.14));
  pose.brow = -0.7;
  pose.browLift = 6;
  pose.mouthOpen = 0.3;
  pose.mouthRound = 1;
  const double swing = wave(phase, -0.14);
  pose.leftArm = {160 + 13 * swing, -14 + 14 * wave(phase, -0.24)};
  pose.rightArm = {160 - 13 * swing, -14 - 14 * wave(phase, -0.24)};
  pose.leftEar = {28, -14 + 8 * swing};
  pose.rightEar = {28, -14 - 8 * swing};
  pose.tail = 8 - 12 * swing;
  pose.tailWhip = -16 - 14 * wave(phase, -0.26);
  pose.stalk = 70 - 8 * swing;
  pose.lantern = 0.85;
  pose.glow = 0.7;
  return pose;
}

MorvoPose tossed(double phase, const MorvoPose &rest) {
  // Curled up, head over tail, once round a loop.
  MorvoPose pose = rest;
  constexpr double turn = 360;
  pose.widthScale = 0.9;
  pose.heightScale = 0.88;
  pose.pivot = 150;
  pose.shift = {0, -79};
  pose.tilt = turn * phase;
  pose.yaw = 0;
  pose.swirl = 2 * turn * phase;
  pose.mouthOpen = 0.55;
  pose.mouthRound = 0.7;
  pose.brow = -0.6;
  pose.browLift = 4;
  const double flap = wave(phase * 3);
  pose.leftArm = {96 + 18 * flap, 20};
  pose.rightArm = {96 - 18 * flap, 20};
  pose.leftEar = {70, 40};
  pose.rightEar = {70, 40};
  pose.tail = 92;
  pose.tailWhip = 34;
  pose.stalk = 112;
  pose.stalkWhip = 40;
  pose.glow = 0.75;
  pose.lantern = 0.5;
  return pose;
}

} // namespace morvo::MorvoActions
