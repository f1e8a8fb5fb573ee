#include "MorvoChoreography.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace morvo::MorvoChoreography {
namespace {

constexpr double turn = 2 * std::numbers::pi;

double wave(double phase, double shift = 0) { return std::sin(turn * (phase + shift)); }

/// 0 before `from`, 1 after `to`, smooth between.
double ramp(double phase, double from, double to) {
  const double part = std::clamp((phase - from) / (to - from), 0.0, 1.0);
  return part * part * (3 - 2 * part);
}

/// 0 at both ends, 1 from `up` to `down`.
double plateau(double phase, double from, double up, double down, double to) {
  return ramp(phase, from, up) * (1 - ramp(phase, down, to));
}

/// One bump from 0 over 1 to 0, by half a sine.
double bump(double phase, double from, double to) {
  const double part = std::clamp((phase - from) / (to - from), 0.0, 1.0);
  return std::sin(std::numbers::pi * part);
}

/// The body keeps its volume: what it loses in height it gains in width.
void squash(MorvoPose &pose, double height) {
  pose.heightScale *= height;
  pose.widthScale *= 1 / std::sqrt(height);
}

/// Bubbles that rise from the head, `strength` from 0 to 1 over an action.
void spout(MorvoPose &pose, double phase, double from, double to) {
  constexpr int count = 7;
  for (int index = 0; index < count; ++index) {
    const double start = from + (to - from) * 0.5 * index / count;
    const double age = std::clamp((phase - start) / ((to - from) * 0.5), 0.0, 1.0);
    if (age <= 0 || age >= 1) {
      continue;
    }
    const double side = (index % 2 == 0 ? -1 : 1) * (34 + 22.0 * (index % 3));
    const double x = 256 + side * (0.5 + age) + 8 * wave(age, 0.2 * index);
    const double y = 190 - 118 * age;
    pose.bubbles.push_back({{x, y}, 20.0 + 9 * (index % 3), std::min(1.0, 3 * (1 - age))});
  }
}

MorvoPose idle(double phase) {
  MorvoPose pose;
  squash(pose, 1 + 0.012 * wave(phase));
  pose.leftFin = 5 - 5 * std::cos(turn * phase);
  pose.rightFin = pose.leftFin;
  pose.tail = 7 * wave(phase);
  pose.stalk = 6 * wave(phase, 0.0);
  pose.glow = 0.7 + 0.15 * (1 - std::cos(turn * phase)) / 2;
  pose.eyesOpen = 1 - bump(phase, 0.55, 0.69);
  return pose;
}

MorvoPose celebrate(double phase) {
  MorvoPose pose;
  const double crouch = plateau(phase, 0, 0.14, 0.16, 0.24);
  const double flight = bump(phase, 0.2, 0.58);
  const double landing = plateau(phase, 0.56, 0.62, 0.64, 0.76);
  const double smallHop = bump(phase, 0.72, 0.88);
  pose.shift.setY(-78 * flight - 30 * smallHop);
  squash(pose, 1 - 0.2 * crouch + 0.1 * bump(phase, 0.2, 0.4) - 0.19 * landing -
                   0.05 * bump(phase, 0.86, 0.98));
  const double joy = plateau(phase, 0.2, 0.28, 0.84, 0.98);
  pose.leftFin = 94 * joy - 18 * crouch + 14 * joy * wave(phase * 4);
  pose.rightFin = pose.leftFin;
  pose.eyesLaughing = phase > 0.24 && phase < 0.86 ? 1 : 0;
  pose.mouthOpen = joy;
  pose.blush = 0.55 + 0.35 * joy;
  pose.tail = 18 * plateau(phase, 0.1, 0.3, 0.7, 0.95) * wave(phase * 4);
  pose.stalk = -22 * flight + 20 * landing;
  pose.glow = 0.7 + 0.3 * joy;
  spout(pose, phase, 0.26, 0.98);
  return pose;
}

MorvoPose alert(double phase) {
  MorvoPose pose;
  const double crouch = plateau(phase, 0, 0.08, 0.1, 0.16);
  const double start = plateau(phase, 0.1, 0.2, 0.82, 0.96);
  const double jump = bump(phase, 0.1, 0.34);
  pose.shift.setY(-42 * jump);
  pose.shift.setX(3 * plateau(phase, 0.3, 0.34, 0.5, 0.6) * wave(phase * 8));
  squash(pose, 1 - 0.12 * crouch + 0.07 * start - 0.1 * plateau(phase, 0.32, 0.36, 0.38, 0.46));
  pose.eyeScale = 1 + 0.16 * start;
  pose.gaze = QPointF(0, -6) * start;
  pose.mouthOpen = 0.42 * start;
  pose.leftFin = 58 * start;
  pose.rightFin = 58 * start;
  pose.tail = -14 * start;
  pose.stalk = -12 * start + 10 * jump;
  pose.glow = 0.7 + 0.3 * start;
  const double pop = plateau(phase, 0.12, 0.22, 0.84, 0.94);
  pose.alarm = pop * (1 + 0.22 * bump(phase, 0.16, 0.34) + 0.06 * wave(phase * 3) * start);
  return pose;
}

MorvoPose sleep(double phase) {
  MorvoPose pose;
  squash(pose, 0.9 + 0.022 * wave(phase));
  pose.eyesOpen = 0;
  pose.blush = 0.7;
  pose.glow = 0.34 + 0.08 * wave(phase);
  pose.stalk = 24 + 3 * wave(phase);
  pose.tail = 12 + 2 * wave(phase);
  pose.leftFin = -14;
  pose.rightFin = -14;
  pose.gaze = {0, 8};
  constexpr int letters = 3;
  for (int index = 0; index < letters; ++index) {
    const double age = std::fmod(phase + static_cast<double>(index) / letters, 1.0);
    pose.snores.push_back({{356 + 58 * age + 6 * wave(age), 226 - 128 * age},
                           20 + 30 * age,
                           std::min({1.0, 6 * age, 3.5 * (1 - age)})});
  }
  return pose;
}

MorvoPose greet(double phase) {
  MorvoPose pose;
  const double raised = plateau(phase, 0.02, 0.2, 0.8, 0.98);
  pose.tilt = -5 * raised;
  squash(pose, 1 - 0.05 * bump(phase, 0, 0.14) + 0.02 * raised);
  pose.leftFin = 84 * raised + 26 * raised * wave(phase * 4);
  pose.rightFin = 12 * raised;
  pose.eyesLaughing = phase > 0.3 && phase < 0.72 ? 1 : 0;
  pose.mouthOpen = 0.7 * raised;
  pose.blush = 0.55 + 0.3 * raised;
  pose.tail = 14 * raised * wave(phase * 3);
  pose.stalk = 12 * raised * wave(phase * 2);
  pose.glow = 0.7 + 0.2 * raised;
  return pose;
}

MorvoPose petted(double phase) {
  MorvoPose pose;
  const double bliss = plateau(phase, 0.02, 0.16, 0.82, 0.98);
  squash(pose, 1 - 0.1 * bliss + 0.03 * bliss * wave(phase * 3));
  pose.tilt = 4 * bliss * wave(phase * 2);
  pose.eyesLaughing = phase > 0.1 && phase < 0.88 ? 1 : 0;
  pose.blush = 0.55 + 0.45 * bliss;
  pose.leftFin = 26 * bliss + 10 * bliss * wave(phase * 4);
  pose.rightFin = pose.leftFin;
  pose.tail = 16 * bliss * wave(phase * 4);
  pose.stalk = 16 * bliss * wave(phase * 2);
  pose.glow = 0.7 + 0.3 * bliss;
  constexpr int hearts = 4;
  for (int index = 0; index < hearts; ++index) {
    const double age = std::clamp((phase - 0.1 - 0.12 * index) / 0.44, 0.0, 1.0);
    if (age > 0 && age < 1) {
      const double side = index % 2 == 0 ? -1 : 1;
      pose.hearts.push_back({{256 + side * (86 + 14.0 * index) + 8 * wave(age), 236 - 110 * age},
                             34 + 12 * age,
                             std::min({1.0, 5 * age, 3 * (1 - age)})});
    }
  }
  return pose;
}

MorvoPose watching(double phase) {
  MorvoPose pose;
  // The gaze rests on the left, then on the right, and passes quickly between.
  const double side = std::clamp(2.6 * wave(phase), -1.0, 1.0);
  squash(pose, 1 + 0.01 * wave(phase * 2));
  pose.gaze = QPointF(13 * side, -2);
  pose.tilt = 2.5 * side;
  pose.tail = 8 * wave(phase * 2);
  pose.stalk = -9 * wave(phase, -0.06);
  pose.glow = 0.85;
  pose.leftFin = 30 + 4 * wave(phase * 2);
  pose.rightFin = pose.leftFin;
  pose.eyesOpen = 1 - 0.95 * (bump(phase, 0.45, 0.55));
  return pose;
}

constexpr std::array sets{
    FrameSet{u"idle", 36, idle, true},         FrameSet{u"celebrate", 28, celebrate, false},
    FrameSet{u"alert", 24, alert, false},      FrameSet{u"sleep", 24, sleep, true},
    FrameSet{u"greet", 24, greet, false},      FrameSet{u"petted", 24, petted, false},
    FrameSet{u"watching", 24, watching, true},
};

} // namespace

std::span<const FrameSet> frameSets() { return sets; }

MorvoPose poseAt(const FrameSet &set, int frame) {
  const int steps = set.loop ? set.frames : set.frames - 1;
  return set.pose(static_cast<double>(frame) / steps);
}

} // namespace morvo::MorvoChoreography
