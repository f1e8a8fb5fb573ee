#include "Motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo::Motion {
namespace {

constexpr double turn = 2 * std::numbers::pi;

double part(double phase, double from, double to) {
  return std::clamp((phase - from) / (to - from), 0.0, 1.0);
}

} // namespace

double wave(double phase, double shift) { return std::sin(turn * (phase + shift)); }

double ramp(double phase, double from, double to) {
  const double at = part(phase, from, to);
  return at * at * (3 - 2 * at);
}

double plateau(double phase, double from, double up, double down, double to) {
  return ramp(phase, from, up) * (1 - ramp(phase, down, to));
}

double bump(double phase, double from, double to) {
  return std::sin(std::numbers::pi * part(phase, from, to));
}

double flight(double phase, double from, double to) {
  const double at = part(phase, from, to);
  return 4 * at * (1 - at);
}

double settle(double phase, double from, double to, double swings) {
  const double at = part(phase, from, to);
  if (phase < from) {
    return 0;
  }
  return (1 - at) * (1 - at) * std::cos(turn * swings * at);
}

double blink(double phase, double at, double length) {
  const double closed = at + length / 3;
  return ramp(phase, at, closed) * (1 - ramp(phase, closed + length / 6, at + length));
}

double age(double phase, double birth, double length) { return part(phase, birth, birth + length); }

double ageInLoop(double phase, double birth, double length) {
  const double since = phase - birth;
  return std::clamp((since - std::floor(since)) / length, 0.0, 1.0);
}

double mix(double from, double to, double part) { return from + (to - from) * part; }

} // namespace morvo::Motion
