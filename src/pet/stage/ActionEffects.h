#pragma once

#include <QPointF>

namespace morvo {

/// What an action does to its node from beginning to end, all its parts together; for `Stage`,
/// which skips the rounds of endless repetitions whose effects are known.
struct ActionEffects {
  enum Property : unsigned {
    position = 1U << 0U,
    rotation = 1U << 1U,
    xScale = 1U << 2U,
    yScale = 1U << 3U,
    alpha = 1U << 4U,
    texture = 1U << 5U,
  };

  /// Properties that it brings to a value.
  unsigned targets = 0;
  /// Properties that it adds to, and how much.
  unsigned gains = 0;
  QPointF travel;
  double turn = 0;
  /// It ends, and nothing but the node knows of it: no block, no removal.
  bool isContained = true;

  /// Whether the two may run beside each other in any order and leave the same.
  [[nodiscard]] bool isApartFrom(const ActionEffects &other) const {
    return (targets & (other.targets | other.gains)) == 0 && (gains & other.targets) == 0;
  }
  /// Adds what another part does.
  void add(const ActionEffects &other) {
    targets |= other.targets;
    gains |= other.gains;
    travel += other.travel;
    turn += other.turn;
    isContained = isContained && other.isContained;
  }
};

} // namespace morvo
