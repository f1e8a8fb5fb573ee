#pragma once

#include <initializer_list>
#include <vector>

namespace morvo {

/// One moving value as an animator notes it: key values at phases, and how each is reached.
class Curve {
public:
  /// How a value is approached from the key before.
  enum class Ease {
    linear,
    in,    ///< Leaves slowly, arrives fast: a fall, a push.
    out,   ///< Leaves fast, arrives slowly: a reach.
    inOut, ///< Slow at both ends.
    back,  ///< Shoots past the value and comes back to it.
    hold,  ///< Keeps the old value and jumps.
  };
  struct Key {
    double at = 0;
    double value = 0;
    Ease ease = Ease::inOut;
  };

  /// `keys` in ascending order, at least one. Before the first and after the last key their values
  /// hold.
  Curve(std::initializer_list<Key> keys);

  [[nodiscard]] double at(double phase) const;
  /// The same, with the phase taken round the loop; first and last key should be alike.
  [[nodiscard]] double inLoop(double phase) const;

private:
  std::vector<Key> m_keys;
};

} // namespace morvo
