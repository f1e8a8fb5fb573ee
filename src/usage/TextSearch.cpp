#include "usage/TextSearch.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace morvo {
namespace {

/// Places that are looked at together; the compiler makes few instructions of them.
constexpr std::size_t stride = 64;

/// The bytes of logs in JSON and English, the most frequent first; others are rarer.
constexpr std::string_view frequent = " etaoinsr\"lhd:,cu0m1p-2g";

std::size_t rarity(char byte) { return std::min(frequent.find(byte), frequent.size()); }

/// The two rarest bytes of what is sought, by which a place is judged.
struct Signs {
  explicit Signs(std::string_view sought) {
    for (std::size_t i = 0; i < sought.size(); ++i) {
      if (rarity(sought[i]) > rarity(sought[first])) {
        first = i;
      }
    }
    second = first == 0 ? 1 : 0;
    for (std::size_t i = 0; i < sought.size(); ++i) {
      if (i != first && rarity(sought[i]) > rarity(sought[second])) {
        second = i;
      }
    }
  }
  std::size_t first = 0;
  std::size_t second = 0;
};

const char *findSlowly(const char *from, const char *end, std::string_view sought) {
  return static_cast<const char *>(
      ::memmem(from, static_cast<std::size_t>(end - from), sought.data(), sought.size()));
}

} // namespace

const char *TextSearch::find(std::string_view text, std::string_view sought) {
  const char *place = text.data();
  const char *const end = place + text.size();
  if (sought.empty()) {
    return place;
  }
  if (sought.size() == 1) {
    return static_cast<const char *>(std::memchr(place, sought.front(), text.size()));
  }
  const Signs signs(sought);
  const char first = sought[signs.first];
  const char second = sought[signs.second];
  for (; static_cast<std::size_t>(end - place) >= stride + sought.size(); place += stride) {
    const char *const firsts = place + signs.first;
    const char *const seconds = place + signs.second;
    unsigned char any = 0;
    for (std::size_t i = 0; i < stride; ++i) {
      any |= static_cast<unsigned char>(firsts[i] == first) &
             static_cast<unsigned char>(seconds[i] == second);
    }
    for (std::size_t i = 0; any != 0 && i < stride; ++i) {
      if (firsts[i] == first && seconds[i] == second &&
          std::memcmp(place + i, sought.data(), sought.size()) == 0) {
        return place + i;
      }
    }
  }
  return findSlowly(place, end, sought);
}

} // namespace morvo
