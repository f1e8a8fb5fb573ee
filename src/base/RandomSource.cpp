#include "base/RandomSource.h"

#include <QtGlobal>

namespace morvo {
namespace {

/// The 53 high bits of a draw are as many as a double holds.
constexpr int lowBits = 11;
constexpr double unit = 0x1.0p-53;

} // namespace

double RandomSource::uniform() { return static_cast<double>((*this)() >> lowBits) * unit; }

double RandomSource::uniform(double lower, double upper) {
  return lower + (upper - lower) * uniform();
}

std::size_t RandomSource::below(std::size_t count) {
  Q_ASSERT(count > 0);
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(*this);
}

SeededRandomSource::SeededRandomSource() : m_engine(std::random_device{}()) {}

SeededRandomSource::SeededRandomSource(std::uint64_t seed) : m_engine(seed) {}

RandomSource::result_type SeededRandomSource::operator()() { return m_engine(); }

} // namespace morvo
