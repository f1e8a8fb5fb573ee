#include "AnimeActs.h"

#include "Curve.h"
#include "Motion.h"

#include <algorithm>
#include <cmath>

namespace morvo::AnimeActs {
namespace {

using Motion::bump;
using Motion::mix;
using Motion::plateau;
using Motion::wave;
using Ease = Curve::Ease;
using Kind = AnimePose::Floater::Kind;
using Layer = AnimePose::Layer;

/// The body keeps its volume: what it loses in height it gains in width.
void squash(AnimePose &pose, double height) {
  pose.height *= height;
  pose.width /= std::sqrt(height);
}

void reach(AnimePose::Arm &arm, QPointF hand, double elbow, double part) {
  arm.hand += (hand - arm.hand) * part;
  arm.elbow = mix(arm.elbow, elbow, part);
}

/// Blends a face from open eyes to laughing ones.
void laugh(AnimePose &pose, double part) {
  pose.eyes.joy = std::max(pose.eyes.joy, Motion::ramp(part, 0.1, 0.5));
  pose.eyes.open *= 1 - Motion::ramp(part, 0, 0.6);
}

/// Things that burst from a place and fall a little at the end of their life.
void burst(AnimePose &pose, double phase, double birth, QPointF centre, double radius) {
  constexpr int count = 8;
  const double age = Motion::age(phase, birth, 0.34);
  if (age <= 0 || age >= 1) {
    return;
  }
  for (int index = 0; index < count; ++index) {
    const double angle = 6.2832 * (index + 0.5) / count;
    const double way = radius * (0.35 + 0.65 * (1 - (1 - age) * (1 - age)));
    const QPointF place =
        centre + QPointF(1.25 * way * std::cos(angle), way * std::sin(angle) + 26 * age * age);
    pose.floaters.push_back(
        {.kind = index % 2 == 0 ? Kind::star : Kind::spark,
         .place = place,
         .size = (index % 2 == 0 ? 30.0 : 24.0) * (0.5 + 0.5 * bump(age, -0.2, 1.2)),
         .opacity = std::min(1.0, 2.6 * (1 - age)),
         .turn = 90 * age * (index % 2 == 0 ? 1 : -1),
         .behind = true});
  }
}

void rise(AnimePose &pose, double phase, Kind kind, double birth, QPointF from, double size) {
  const double age = Motion::age(phase, birth, 0.42);
  if (age > 0 && age < 1) {
    pose.floaters.push_back({.kind = kind,
                             .place = from + QPointF(9 * wave(age), -92 * age),
                             .size = size * (0.6 + 0.4 * Motion::ramp(age, 0, 0.3)),
                             .opacity = std::min({1.0, 6 * age, 3 * (1 - age)}),
                             .turn = 12 * wave(age, 0.2)});
  }
}

} // namespace

void celebrate(AnimePose &pose, double phase) {
  // Down, up, down on the knees, a smaller hop with the head thrown to the side, and home.
  const Curve stretch{{0, 1},
                      {0.1, 0.88},
                      {0.14, 0.88},
                      {0.22, 1.06},
                      {0.31, 1},
                      {0.4, 1.02},
                      {0.49, 0.88, Ease::out},
                      {0.56, 1.02},
                      {0.62, 1},
                      {0.7, 0.93, Ease::out},
                      {0.77, 1.02},
                      {0.84, 1}};
  squash(pose, stretch.at(phase));
  const double jump = Motion::flight(phase, 0.16, 0.42);
  const double hop = Motion::flight(phase, 0.53, 0.69);
  const double joy = plateau(phase, 0.12, 0.2, 0.82, 0.95);
  pose.shift.setY(-34 * jump - 22 * hop);
  pose.sway += 7 * joy * wave(phase * 3) * Motion::ramp(phase, 0.42, 0.5);
  const double arms =
      Curve{{0, 0}, {0.11, -0.22}, {0.2, 1.06, Ease::out}, {0.27, 1}, {0.82, 1}, {0.95, 0}}.at(
          phase);
  for (auto &arm : pose.arms) {
    reach(arm, {76, -56 + 9 * wave(phase * 6) * joy}, 0.3, arms);
    arm.shape = arms > 0.5 ? AnimePose::Hand::open : AnimePose::Hand::mitten;
    arm.layer = arms > 0.3 ? Layer::head : Layer::body;
  }
  for (std::size_t index = 0; index < pose.legs.size(); ++index) {
    const double side = index == 0 ? -1 : 1;
    pose.legs.at(index).foot +=
        QPointF(side * 4, -20) * jump + QPointF(0, index == 0 ? -16 : -4) * hop;
    pose.legs.at(index).turn = side * (26 * jump + 14 * hop);
    pose.legs.at(index).knee = mix(pose.legs.at(index).knee, 0.9, std::max(jump, hop));
  }
  pose.headTilt += -8 * plateau(phase, 0.44, 0.52, 0.66, 0.78) + 4 * bump(phase, 0.68, 0.9);
  pose.pitch = -0.5 * joy + 0.6 * bump(phase, 0, 0.17);
  laugh(pose, plateau(phase, 0.14, 0.2, 0.8, 0.88));
  pose.mouth.open = joy;
  pose.blush = mix(pose.blush, 1, joy);
  burst(pose, phase, 0.18, {240, 190}, 158);
  burst(pose, phase, 0.53, {240, 200}, 164);
}

void alert(AnimePose &pose, double phase) {
  const Curve stretch{{0, 1},       {0.07, 0.92}, {0.18, 1.07, Ease::out},
                      {0.29, 0.95}, {0.37, 1.02}, {0.44, 1}};
  squash(pose, stretch.at(phase));
  const double start = plateau(phase, 0.07, 0.13, 0.86, 0.96);
  const double jump = Motion::flight(phase, 0.09, 0.27);
  const double call = plateau(phase, 0.38, 0.46, 0.8, 0.9);
  pose.shift.setY(-22 * jump);
  pose.eyes.size = 1 + 0.14 * plateau(phase, 0.07, 0.12, 0.4, 0.5);
  pose.eyes.open = std::max(pose.eyes.open, start);
  pose.brows = 10 * start;
  pose.mouth.open = start * (0.5 + 0.3 * call * (1 + wave(phase * 7)) / 2);
  pose.mouth.round = plateau(phase, 0.08, 0.12, 0.38, 0.46);
  pose.mouth.width = mix(1, 0.85, start);
  pose.alarm = Curve{{0.08, 0}, {0.2, 1, Ease::back}, {0.84, 1}, {0.93, 0, Ease::in}}.at(phase) *
               (1 + 0.07 * wave(phase * 5) * start);
  for (auto &arm : pose.arms) {
    reach(arm, {56, 14}, 0.2, start * (1 - call));
  }
  // One hand calls over, the other stays on the hip.
  pose.arms[0].layer = call > 0.3 ? Layer::head : Layer::body;
  pose.arms[0].shape = start > 0.4 ? AnimePose::Hand::open : AnimePose::Hand::mitten;
  reach(pose.arms[0], {76 + 12 * wave(phase * 7), -54 + 5 * wave(phase * 7, 0.25)}, 0.25, call);
  reach(pose.arms[1], {10, 62}, 0.7, call);
  pose.headTilt -= 6 * call;
  pose.lean -= 3.5 * call;
  pose.follow.ears -= 14 * start;
  pose.legs[0].foot += QPointF(-3, -9) * jump;
  pose.legs[1].foot += QPointF(3, -9) * jump;
}

void greet(AnimePose &pose, double phase) {
  const double raised =
      Curve{{0, 0}, {0.08, -0.14}, {0.24, 1.05, Ease::out}, {0.3, 1}, {0.8, 1}, {0.96, 0}}.at(
          phase);
  const double warm = plateau(phase, 0.08, 0.24, 0.8, 0.97);
  squash(pose, 1 - 0.05 * bump(phase, 0, 0.16) + 0.02 * bump(phase, 0.14, 0.34) -
                   0.03 * bump(phase, 0.84, 0.98));
  pose.shift.setY(-13 * Motion::flight(phase, 0.14, 0.28));
  AnimePose::Arm &arm = pose.arms[0];
  arm.layer = raised > 0.35 ? Layer::head : Layer::body;
  arm.shape = raised > 0.3 ? AnimePose::Hand::open : AnimePose::Hand::mitten;
  const double waving = plateau(phase, 0.22, 0.3, 0.74, 0.82);
  reach(arm, {76 + 14 * waving * wave(phase * 6), -56 + 6 * waving * wave(phase * 6, 0.25)}, 0.25,
        raised);
  arm.wrist = 20 * waving * wave(phase * 6, -0.06);
  reach(pose.arms[1], {10, 62}, 0.7, warm);
  pose.headTilt += 7 * warm + 2 * waving * wave(phase * 3);
  pose.lean += 3 * warm;
  pose.sway -= 5 * warm;
  pose.turn = mix(pose.turn, -0.2, warm);
  laugh(pose, plateau(phase, 0.34, 0.4, 0.66, 0.72));
  pose.mouth.open = 0.75 * warm;
  pose.blush = mix(pose.blush, 0.9, warm);
  pose.legs[1].foot += QPointF(2, -10) * warm;
  pose.legs[1].turn += 16 * warm;
  pose.follow.ears -= 6 * waving * wave(phase * 6);
  rise(pose, phase, Kind::spark, 0.28, {76, 190}, 36);
  rise(pose, phase, Kind::spark, 0.42, {52, 246}, 28);
}

void petted(AnimePose &pose, double phase) {
  const double bliss = plateau(phase, 0.03, 0.16, 0.82, 0.97);
  const double pat = wave(phase * 4, -0.1) * bliss;
  squash(pose, 1 - 0.045 * bliss + 0.022 * pat);
  pose.headShift += QPointF(3 * pat, 8 * bliss - 5 * pat);
  pose.headTilt += 7 * bliss * wave(phase * 2, 0.05);
  pose.lean += 2.5 * bliss * wave(phase * 2);
  pose.pitch = 0.5 * bliss;
  laugh(pose, plateau(phase, 0.08, 0.14, 0.84, 0.92));
  pose.blush = mix(pose.blush, 1.25, bliss);
  pose.mouth.width = mix(1, 1.15, bliss);
  pose.mouth.open = 0.36 * plateau(phase, 0.4, 0.48, 0.7, 0.8);
  // Her fists come up before the chest and wriggle.
  for (std::size_t index = 0; index < pose.arms.size(); ++index) {
    const double wriggle = wave(phase * 4, 0.5 * static_cast<double>(index));
    reach(pose.arms.at(index), {-4, 40 + 4 * wriggle}, 0.5, bliss);
  }
  pose.legs[0].turn -= 4 * bliss;
  pose.legs[1].turn += 4 * bliss;
  pose.legs[0].foot += QPointF(5, 0) * bliss;
  pose.legs[1].foot += QPointF(-5, 0) * bliss;
  pose.follow.ears += 20 * bliss + 4 * pat;
  constexpr int hearts = 5;
  for (int index = 0; index < hearts; ++index) {
    const double side = index % 2 == 0 ? -1 : 1;
    rise(pose, phase, Kind::heart, 0.12 + 0.1 * index,
         {240 + side * (112 + 13.0 * index), 190.0 + 14 * (index % 3)}, 34 + 4 * (index % 3));
  }
}

void heart(AnimePose &pose, double phase) {
  const double gather = plateau(phase, 0.04, 0.2, 0.82, 0.96);
  const double offer =
      Curve{{0.24, 0}, {0.32, -0.2}, {0.42, 1, Ease::back}, {0.76, 1}, {0.86, 0}}.at(phase);
  squash(pose, 1 - 0.05 * bump(phase, 0.22, 0.38) + 0.03 * bump(phase, 0.36, 0.56));
  for (auto &arm : pose.arms) {
    reach(arm, {-1 + 9 * offer, 44 - 8 * offer}, 0.5, gather);
  }
  pose.heart = Curve{{0.16, 0}, {0.28, 0.55},       {0.34, 0.5}, {0.44, 1, Ease::back},
                     {0.78, 1}, {0.88, 0, Ease::in}}
                   .at(phase) *
               (1 + 0.07 * wave(phase * 8) * std::max(0.0, offer));
  pose.headTilt += 9 * std::max(0.0, offer) - 3 * gather;
  pose.pitch = 0.5 * gather * (1 - offer);
  pose.eyes.gaze.setY(0.8 * gather * (1 - std::clamp(offer, 0.0, 1.0)));
  const double wink = plateau(phase, 0.44, 0.48, 0.64, 0.7);
  laugh(pose, wink);
  pose.mouth.open = 0.7 * std::max(0.0, offer);
  pose.blush = mix(pose.blush, 1.1, gather);
  pose.sway += 5 * offer;
  pose.legs[1].foot += QPointF(2, -16) * std::max(0.0, offer);
  pose.legs[1].turn += 24 * std::max(0.0, offer);
  pose.follow.ears -= 8 * offer;
  for (int index = 0; index < 6; ++index) {
    const double side = index % 2 == 0 ? -1 : 1;
    rise(pose, phase, Kind::heart, 0.4 + 0.032 * index,
         {240 + side * (90 + 17.0 * index), 300.0 - 22 * index}, 30 + 5 * (index % 3));
  }
}

void vow(AnimePose &pose, double phase) {
  const double still = plateau(phase, 0.1, 0.24, 0.8, 0.95);
  const double snap =
      Curve{{0, 0}, {0.12, -0.25}, {0.24, 1.1, Ease::out}, {0.32, 1}, {0.8, 1}, {0.95, 0}}.at(
          phase);
  squash(pose, 1 - 0.07 * bump(phase, 0.02, 0.2) + 0.04 * bump(phase, 0.18, 0.36) -
                   0.03 * bump(phase, 0.84, 0.98));
  pose.lean += -5 * snap;
  pose.sway += 5 * snap;
  pose.headTilt += 7 * snap;
  pose.turn = mix(pose.turn, -0.35, still);
  pose.pitch = 0.35 * still;
  pose.brows = -2 * still;
  pose.browTilt = 16 * still;
  pose.eyes.open *= 1 - 0.18 * still;
  pose.eyes.star = plateau(phase, 0.3, 0.38, 0.72, 0.8);
  pose.mouth.open = 0.34 * plateau(phase, 0.34, 0.4, 0.74, 0.82);
  pose.mouth.width = mix(1, 0.9, still);
  AnimePose::Arm &veil = pose.arms[0];
  veil.layer = snap > 0.3 ? Layer::head : Layer::body;
  veil.shape = snap > 0.4 ? AnimePose::Hand::open : AnimePose::Hand::mitten;
  reach(veil, {14, -66}, 0.9, snap);
  AnimePose::Arm &far = pose.arms[1];
  far.shape = snap > 0.4 ? AnimePose::Hand::open : AnimePose::Hand::mitten;
  reach(far, {82, 12}, 0.2, snap);
  pose.legs[0].foot += QPointF(-12, 0) * snap;
  pose.legs[1].foot += QPointF(14, 0) * snap;
  pose.crouch += 6 * still;
  // A wind that nobody else feels.
  const double wind = still * (0.8 + 0.2 * wave(phase * 5));
  pose.follow.tail -= 7 * wind;
  pose.follow.tip -= (10 + 9 * wave(phase * 5, -0.2)) * wind;
  pose.follow.locks += 9 * wind;
  pose.follow.crest += 12 * wind;
  pose.follow.lift += 5 * wind;
  for (int index = 0; index < 6; ++index) {
    const double side = index % 2 == 0 ? -1 : 1;
    rise(pose, phase, index % 3 == 0 ? Kind::star : Kind::spark, 0.24 + 0.062 * index,
         {240 + side * (130 + 14.0 * index), 400.0 - 30 * index}, 26 + 4 * (index % 3));
  }
}

} // namespace morvo::AnimeActs
