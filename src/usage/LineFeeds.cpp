#include "usage/LineFeeds.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace morvo {
namespace {

constexpr std::int64_t block = std::int64_t{64} << 10U;

} // namespace

std::optional<std::int64_t> LineFeeds::behindLast(const OpenLog &log, std::int64_t begin,
                                                  std::int64_t end) {
  std::vector<char> bytes(block);
  while (end > begin) {
    const auto count = static_cast<std::size_t>(std::min(block, end - begin));
    end -= static_cast<std::int64_t>(count);
    if (log.read(end, bytes.data(), count) != count) {
      return std::nullopt;
    }
    const auto *const found = static_cast<const char *>(::memrchr(bytes.data(), '\n', count));
    if (found != nullptr) {
      return end + (found - bytes.data()) + 1;
    }
  }
  return begin;
}

std::optional<std::int64_t> LineFeeds::behindFirst(const OpenLog &log, std::int64_t begin,
                                                   std::int64_t end) {
  std::vector<char> bytes(block);
  for (std::int64_t from = begin; from < end;) {
    const auto count = static_cast<std::size_t>(std::min(block, end - from));
    if (log.read(from, bytes.data(), count) != count) {
      return std::nullopt;
    }
    const auto *const found = static_cast<const char *>(std::memchr(bytes.data(), '\n', count));
    if (found != nullptr) {
      return from + (found - bytes.data()) + 1;
    }
    from += static_cast<std::int64_t>(count);
  }
  return begin;
}

} // namespace morvo
