#include "Curve.h"
#include "MorvoActions.h"
#include "MorvoGestures.h"
#include "Motion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace morvo::MorvoActions {

using namespace Motion;
using namespace MorvoGestures;
using Ease = Curve::Ease;

namespace {

double fraction(double value) { return value - std::floor(value); }

/// Both arms and ears thrown up by `part` and waving by `flutter` degrees.
void raiseFins(MorvoPose &pose, double part, double armTurn, double flutter) {
  for (MorvoPose::Fin *arm : {&pose.leftArm, &pose.rightArm}) {
    arm->turn = mix(arm->turn, armTurn + flutter, part);
    arm->bend = mix(arm->bend, 22 - flutter, part);
  }
  for (MorvoPose::Fin *ear : {&pose.leftEar, &pose.rightEar}) {
    ear->turn = mix(ear->turn, 30 - 0.4 * flutter, part);
  }
}

} // namespace

MorvoPose celebrate(double phase, const MorvoPose &rest) {
  // Breath in and crouch; the water breaks out; two hops; a hum to settle.
  static const Curve height{{0, 1},
                            {0.1, 0.79},
                            {0.13, 0.78},
                            {0.18, 1.1, Ease::out},
                            {0.26, 1.02},
                            {0.31, 1.04},
                            {0.35, 0.84, Ease::out},
                            {0.41, 1.1},
                            {0.5, 1},
                            {0.54, 1.03},
                            {0.57, 0.88, Ease::out},
                            {0.65, 1.03},
                            {0.72, 1}};
  MorvoPose pose = rest;
  squash(pose, height.at(phase));
  pose.shift.ry() -= 30 * flight(phase, 0.155, 0.335) + 26 * flight(phase, 0.39, 0.555);
  const double joy = plateau(phase, 0.14, 0.19, 0.86, 0.99);
  const double crouch = plateau(phase, 0.01, 0.09, 0.13, 0.165);
  const double hum = plateau(phase, 0.6, 0.68, 0.88, 0.99);
  pose.puff = crouch;
  pose.pitch = 10 * crouch - 6 * plateau(phase, 0.15, 0.2, 0.5, 0.6);
  shut(pose, plateau(phase, 0.02, 0.07, 0.92, 0.98));
  pose.eyesLaughing = phase > 0.15 && phase < 0.93 ? 1 : 0;
  pose.brow = 0.8 * crouch;
  pose.mouthOpen = plateau(phase, 0.15, 0.19, 0.56, 0.64);
  pose.blush = rest.blush + 0.4 * joy;
  raiseFins(pose, plateau(phase, 0.14, 0.19, 0.62, 0.8), 44, 20 * wave(phase * 9));
  pose.leftArm.turn += 16 * crouch;
  pose.rightArm.turn += 16 * crouch;
  pose.tilt = 6 * hum * wave((phase - 0.6) * 5);
  pose.tail += 20 * joy * wave(phase * 6);
  pose.glow = mix(rest.glow, 1, joy);
  pose.lantern = mix(rest.lantern, 1, joy);
  pose.wavePhase = joy > 0.3 ? fraction(phase * 3) : -1;
  static const Curve water{{0.15, 0}, {0.2, 150, Ease::out}, {0.46, 140}, {0.56, 0, Ease::in}};
  setSpout(pose, water.at(phase) * (1 + 0.05 * wave(phase * 14)));
  pose.spoutSway = 5 * wave(phase * 5);
  addDrops(pose, phase, 0.2, 0.82);
  constexpr std::array bubbles{QPointF(96, 210), QPointF(420, 190), QPointF(60, 300),
                               QPointF(452, 300)};
  for (std::size_t index = 0; index < bubbles.size(); ++index) {
    const QPointF to = bubbles[index];
    addBubble(pose, age(phase, 0.5 + 0.06 * static_cast<double>(index), 0.32),
              {mix(256, to.x(), 0.55), 370}, to - QPointF(0, 90),
              20 + 5.0 * static_cast<double>(index % 3));
  }
  for (int index = 0; index < 3; ++index) {
    const double since = age(phase, 0.6 + 0.08 * index, 0.24);
    if (since > 0 && since < 1) {
      const double side = index % 2 == 0 ? 1 : -1;
      pose.notes.push_back({{256 + side * (166 + 34 * since), 196 - 104 * since},
                            52,
                            std::min({1.0, 6 * since, 4 * (1 - since)}),
                            14 * wave(since)});
    }
  }
  return pose;
}

MorvoPose alert(double phase, const MorvoPose &rest) {
  static const Curve height{{0, 1},       {0.08, 0.87}, {0.15, 1.09, Ease::out},
                            {0.24, 1.02}, {0.32, 1.04}, {0.36, 0.87, Ease::out},
                            {0.45, 1.05}, {0.54, 1.01}, {0.84, 1.01},
                            {0.96, 1}};
  MorvoPose pose = rest;
  squash(pose, height.at(phase));
  pose.shift.ry() -= 30 * flight(phase, 0.11, 0.345);
  const double alarm = plateau(phase, 0.09, 0.15, 0.84, 0.98);
  const double waving = plateau(phase, 0.36, 0.46, 0.78, 0.92);
  pose.shift.rx() += 3.5 * plateau(phase, 0.36, 0.4, 0.5, 0.6) * wave(phase * 10);
  pose.tilt = 3.5 * waving * wave(phase * 4);
  pose.yaw = mix(rest.yaw, 0, alarm);
  pose.pitch = -5 * alarm;
  shut(pose, std::max(0.8 * plateau(phase, 0, 0.05, 0.07, 0.12), blink(phase, 0.62, 0.1)));
  pose.eyeScale = 1 + 0.17 * alarm;
  pose.gaze = QPointF(0, -4) * alarm;
  pose.brow = -0.7 * alarm;
  pose.browLift = 8 * alarm;
  pose.mouthOpen = 0.62 * alarm;
  pose.mouthRound = 0.85 * alarm;
  raiseFins(pose, waving, 46, 24 * wave(phase * 8));
  for (MorvoPose::Fin *ear : {&pose.leftEar, &pose.rightEar}) {
    const MorvoPose::Fin &still = ear == &pose.leftEar ? rest.leftEar : rest.rightEar;
    *ear = {mix(still.turn, 17, alarm), mix(still.bend, -6, alarm)};
  }
  pose.tail += 16 * alarm;
  pose.stalk = mix(rest.stalk, 52, alarm);
  pose.stalkWhip = mix(rest.stalkWhip, 26, alarm);
  pose.warning = alarm;
  pose.lantern = mix(rest.lantern, 0.72 + 0.28 * wave(phase * 6), alarm);
  pose.glow = mix(rest.glow, 0.95, alarm);
  static const Curve mark{{0.1, 0}, {0.18, 1, Ease::back}, {0.84, 1}, {0.93, 0, Ease::in}};
  pose.alarm = mark.at(phase) * (1 + 0.07 * waving * wave(phase * 6));
  return pose;
}

MorvoPose greet(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  const double dip = plateau(phase, 0, 0.08, 0.1, 0.18);
  const double hello = plateau(phase, 0.1, 0.24, 0.78, 0.98);
  squash(pose, 1 - 0.09 * dip + 0.045 * bump(phase, 0.14, 0.34) + 0.012 * hello -
                   0.03 * bump(phase, 0.84, 0.97));
  pose.shift.ry() -= 20 * flight(phase, 0.14, 0.32);
  pose.tilt = 4 * dip - 7 * hello + 1.6 * hello * wave(phase * 4);
  pose.yaw = mix(rest.yaw, -3, hello);
  pose.leftArm.turn = mix(rest.leftArm.turn + 8 * dip, 44 + 25 * wave(phase * 5), hello);
  pose.leftArm.bend = mix(rest.leftArm.bend, 12 - 26 * wave(phase * 5, -0.12), hello);
  pose.rightArm.turn = mix(rest.rightArm.turn, 126, hello);
  pose.leftEar.turn = mix(rest.leftEar.turn, 34, hello);
  pose.rightEar.turn = mix(rest.rightEar.turn, 40, hello);
  shut(pose, blink(phase, 0.04, 0.12));
  pose.wink = plateau(phase, 0.5, 0.54, 0.66, 0.71);
  pose.mouthOpen = 0.72 * plateau(phase, 0.16, 0.24, 0.76, 0.88);
  pose.blush = rest.blush + 0.35 * hello;
  pose.tail += 16 * hello * wave(phase * 4);
  pose.glow = mix(rest.glow, 0.85, hello);
  pose.lantern = mix(rest.lantern, 1, hello);
  addBubble(pose, age(phase, 0.42, 0.42), {318, 340}, {440, 196}, 20);
  addBubble(pose, age(phase, 0.54, 0.38), {322, 350}, {470, 262}, 14);
  return pose;
}

MorvoPose petted(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  const double bliss = plateau(phase, 0.02, 0.16, 0.8, 0.98);
  // The hand strokes three times, and the head gives way and comes back.
  const double stroke = wave(phase * 3);
  squash(pose, 1 - 0.1 * bliss + 0.03 * bliss * stroke);
  pose.tilt = 5 * bliss * wave(phase * 1.5, -0.1);
  pose.lean = 0.03 * bliss * wave(phase * 1.5);
  pose.yaw = mix(rest.yaw, 2 + 7 * wave(phase * 1.5), bliss);
  pose.pitch = 7 * bliss;
  shut(pose, plateau(phase, 0.04, 0.12, 0.86, 0.94));
  pose.eyesLaughing = phase > 0.11 && phase < 0.88 ? 1 : 0;
  pose.blush = rest.blush + 0.5 * bliss;
  pose.smile = mix(rest.smile, 1.15, bliss);
  for (MorvoPose::Fin *ear : {&pose.leftEar, &pose.rightEar}) {
    ear->turn = mix(ear->turn, 84 + 9 * stroke, bliss);
    ear->bend = mix(ear->bend, 30, bliss);
  }
  pose.leftArm.turn = mix(rest.leftArm.turn, 122 + 9 * wave(phase * 4), bliss);
  pose.rightArm.turn = mix(rest.rightArm.turn, 122 - 9 * wave(phase * 4), bliss);
  pose.tail += 22 * bliss * wave(phase * 5);
  pose.stalk += 22 * bliss + 8 * bliss * stroke;
  pose.glow = mix(rest.glow, 1, bliss);
  pose.lantern = mix(rest.lantern, 1, bliss);
  pose.wavePhase = bliss > 0.3 ? fraction(phase * 2) : -1;
  constexpr int hearts = 4;
  for (int index = 0; index < hearts; ++index) {
    const double since = age(phase, 0.12 + 0.13 * index, 0.42);
    if (since > 0 && since < 1) {
      const double side = index % 2 == 0 ? -1 : 1;
      const double grown = 0.4 + 0.7 * ramp(since, 0, 0.25) - 0.1 * ramp(since, 0.25, 0.4);
      pose.hearts.push_back(
          {{256 + side * (112 + 13.0 * index) + 10 * wave(since * 1.2), 236 - 150 * since},
           40 * grown,
           std::min({1.0, 6 * since, 4 * (1 - since)}),
           side * 12 + 10 * wave(since)});
    }
  }
  return pose;
}

MorvoPose curious(double phase, const MorvoPose &rest) {
  MorvoPose pose = rest;
  constexpr double popAt = 0.56;
  // A stray bubble sinks in from the upper right and is looked at, closer and closer.
  static const Curve sideways{{0.03, 466}, {0.2, 444}, {0.34, 468}, {0.46, 452}, {0.54, 454}};
  static const Curve down{{0.03, 70}, {0.2, 150}, {0.34, 214}, {0.46, 258}, {0.54, 262}};
  const QPointF bubble(sideways.at(phase) + 6 * wave(phase * 4), down.at(phase));
  const double follow = plateau(phase, 0.05, 0.14, popAt - 0.02, popAt);
  const double near = plateau(phase, 0.34, 0.48, popAt, popAt + 0.02);
  const double startle = plateau(phase, popAt, popAt + 0.03, 0.64, 0.72);
  const double giggle = plateau(phase, 0.7, 0.76, 0.88, 0.98);
  pose.gaze = QPointF(std::clamp((bubble.x() - 352) / 11, -9.0, 9.0),
                      std::clamp((bubble.y() - 290) / 15, -10.0, 9.0)) *
              follow;
  pose.yaw = mix(rest.yaw, 24 + 4 * near, follow);
  pose.tilt = 5 * follow * (1 - near) - 7 * startle;
  pose.lean = 0.03 * near - 0.04 * startle;
  pose.pitch = -8 * follow * (1 - near) + 5 * near - 4 * startle;
  pose.eyeScale = 1 + 0.09 * follow + 0.1 * plateau(phase, 0.62, 0.65, 0.69, 0.74);
  pose.browLift = 7 * std::max(follow, startle);
  pose.mouthOpen = 0.3 * near + 0.5 * startle + 0.7 * giggle;
  pose.mouthRound = std::max(near, startle);
  // The blink of surprise, then a wide look, then laughter.
  shut(pose, std::max(blink(phase, 0.3, 0.08), plateau(phase, popAt, popAt + 0.02, 0.61, 0.64)));
  pose.eyesLaughing = phase > 0.745 && phase < 0.94 ? 1 : 0;
  shut(pose, plateau(phase, 0.72, 0.75, 0.93, 0.97));
  squash(pose,
         1 + 0.02 * follow - 0.1 * bump(phase, popAt, 0.68) + 0.035 * giggle * wave(phase * 9));
  const double poke = plateau(phase, 0.4, 0.5, popAt, 0.66);
  pose.rightArm.turn = mix(rest.rightArm.turn, 34, poke);
  pose.rightArm.bend = mix(rest.rightArm.bend, -8, poke);
  raiseFins(pose, 0.8 * startle, 66, 0);
  pose.leftEar.turn = mix(rest.leftEar.turn, 30, std::max(follow, startle));
  pose.rightEar.turn = mix(rest.rightEar.turn, 30, std::max(follow, startle));
  pose.blush = rest.blush + 0.4 * giggle;
  pose.tail += 14 * follow * wave(phase * 3) + 14 * giggle * wave(phase * 6);
  pose.lantern = mix(rest.lantern, 1, std::max(follow, giggle));
  const double there = ramp(phase, 0.03, 0.09);
  if (phase < popAt && there > 0) {
    pose.bubbles.push_back({bubble, (44 + 3 * wave(phase * 7)) * there, there});
  }
  const double burst = age(phase, popAt, 0.12);
  if (burst > 0 && burst < 1) {
    constexpr int splashes = 7;
    for (int index = 0; index < splashes; ++index) {
      const double angle = 2 * std::numbers::pi * index / splashes;
      const double reach = 18 + 22 * burst;
      pose.drops.push_back({QPointF(454 + reach * std::cos(angle), 262 + reach * std::sin(angle)),
                            15 * (1 - 0.5 * burst), 1 - burst,
                            angle * 180 / std::numbers::pi + 90});
    }
  }
  return pose;
}

} // namespace morvo::MorvoActions
