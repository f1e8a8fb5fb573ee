#include "Curve.h"

#include <algorithm>
#include <cmath>

namespace morvo {
namespace {

/// How far `Ease::back` shoots past: about a tenth of the way.
constexpr double overshoot = 1.70158;

double eased(Curve::Ease ease, double part) {
  const double left = 1 - part;
  switch (ease) {
  case Curve::Ease::linear:
    return part;
  case Curve::Ease::in:
    return part * part;
  case Curve::Ease::out:
    return 1 - left * left;
  case Curve::Ease::inOut:
    return part * part * (3 - 2 * part);
  case Curve::Ease::back:
    return 1 - left * left * ((overshoot + 1) * left - overshoot);
  case Curve::Ease::hold:
    return part < 1 ? 0 : 1;
  }
  return part;
}

} // namespace

Curve::Curve(std::initializer_list<Key> keys) : m_keys(keys) {}

double Curve::at(double phase) const {
  const auto next = std::ranges::upper_bound(m_keys, phase, {}, &Key::at);
  if (next == m_keys.begin()) {
    return m_keys.front().value;
  }
  if (next == m_keys.end()) {
    return m_keys.back().value;
  }
  const Key &from = *(next - 1);
  const double part = (phase - from.at) / (next->at - from.at);
  return from.value + (next->value - from.value) * eased(next->ease, part);
}

double Curve::inLoop(double phase) const { return at(phase - std::floor(phase)); }

} // namespace morvo
