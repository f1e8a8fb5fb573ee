#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

/// The lines of agents' logs.
namespace morvo::LogLine {

/// Longer lines, and longer objects of an array, are passed over, so that a file of any size takes
/// a bounded amount of memory. Agents put whole pictures and files into a line.
inline constexpr std::size_t longest = std::size_t{64} << 20U;

/// Hands over the lines of the text that hold the marker, from the first to the last and without
/// their line feeds. Every line holds the empty marker. Line ends are sought only around a hit, so
/// that text without the marker costs little more than a look at its bytes.
void eachMarked(std::string_view text, std::string_view marker,
                const std::function<void(std::string_view)> &take);

} // namespace morvo::LogLine
