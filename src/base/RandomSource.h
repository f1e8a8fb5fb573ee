#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>

namespace morvo {

/// Chance, handed in so that tests own it. A uniform random bit generator of the standard library,
/// so it works with the standard distributions too. Not thread-safe.
class RandomSource {
public:
  using result_type = std::uint64_t;

  virtual ~RandomSource() = default;

  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return std::numeric_limits<result_type>::max(); }
  virtual result_type operator()() = 0;

  /// Uniform in [0, 1).
  [[nodiscard]] double uniform();
  /// Uniform in [lower, upper].
  [[nodiscard]] double uniform(double lower, double upper);
  /// Uniform in 0 … count − 1; `count` is at least 1.
  [[nodiscard]] std::size_t below(std::size_t count);
};

/// A Mersenne twister, seeded from the system or with a given seed.
class SeededRandomSource final : public RandomSource {
public:
  SeededRandomSource();
  explicit SeededRandomSource(std::uint64_t seed);

  result_type operator()() override;

private:
  std::mt19937_64 m_engine;
};

} // namespace morvo
