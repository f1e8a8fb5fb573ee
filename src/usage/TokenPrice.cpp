#include "usage/TokenPrice.h"

#include <algorithm>
#include <array>

namespace morvo {
namespace {

struct Row {
  std::string_view key;
  TokenPrice price;
};

/// The first key that a model's name contains decides.
constexpr std::array rows{
    Row{.key = "opus", .price = {.input = 15, .output = 75, .cacheWrite = 18.75}},
    Row{.key = "sonnet", .price = {.input = 3, .output = 15, .cacheWrite = 3.75}},
    Row{.key = "haiku", .price = {.input = 0.8, .output = 4, .cacheWrite = 1}},
    Row{.key = "gpt-5", .price = {.input = 1.25, .output = 10, .cacheWrite = 1.5}},
    Row{.key = "o3", .price = {.input = 2, .output = 8, .cacheWrite = 2.5}},
    Row{.key = "gemini", .price = {.input = 1.25, .output = 5, .cacheWrite = 1.5}},
};
constexpr TokenPrice otherwise{.input = 3, .output = 15, .cacheWrite = 3.75};

/// The prices are those of a million tokens.
constexpr double million = 1'000'000;

bool containsIgnoringCase(std::string_view text, std::string_view key) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return !std::ranges::search(text, key, {}, lower).empty();
}

} // namespace

TokenPrice TokenPrice::ofModel(std::string_view model) {
  const auto *const row = std::ranges::find_if(
      rows, [model](const Row &candidate) { return containsIgnoringCase(model, candidate.key); });
  return row == rows.end() ? otherwise : row->price;
}

double TokenPrice::ofMixed(std::int64_t tokens) const {
  const auto half = static_cast<double>(tokens / 2);
  return (half * input + half * output) / million;
}

double TokenPrice::of(std::int64_t in, std::int64_t out, std::int64_t written) const {
  return (static_cast<double>(in) * input + static_cast<double>(out) * output +
          static_cast<double>(written) * cacheWrite) /
         million;
}

} // namespace morvo
