#pragma once

#include <cstdint>
#include <string_view>

namespace morvo {

/// What a model's tokens cost, in US dollars a million.
struct TokenPrice {
  double input = 0;
  double output = 0;
  double cacheWrite = 0;

  /// Found by what the model's name contains, without regard to case; an unknown model has the
  /// price of a middle one.
  [[nodiscard]] static TokenPrice ofModel(std::string_view model);

  /// US dollars for tokens that went in, came out and were written to a cache.
  [[nodiscard]] double of(std::int64_t in, std::int64_t out, std::int64_t written) const;

  /// US dollars for tokens of which nobody knows how many went in and how many came out: half and
  /// half, an odd token costing nothing.
  [[nodiscard]] double ofMixed(std::int64_t tokens) const;

  bool operator==(const TokenPrice &) const = default;
};

} // namespace morvo
