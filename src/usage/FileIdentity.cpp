#include "usage/FileIdentity.h"

#include <algorithm>
#include <limits>

namespace morvo {
namespace {

/// Nanoseconds that the type can hold; a file system may hand out any number of seconds.
std::int64_t nanoseconds(const timespec &time) {
  constexpr std::int64_t billion = 1'000'000'000;
  constexpr std::int64_t farthest = std::numeric_limits<std::int64_t>::max() / billion - 1;
  const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, -farthest, farthest);
  return seconds * billion + time.tv_nsec;
}

} // namespace

FileIdentity FileIdentity::of(const struct stat &info) {
  return {.device = info.st_dev,
          .inode = info.st_ino,
          .size = info.st_size,
          .modified = nanoseconds(info.st_mtim),
          .changed = nanoseconds(info.st_ctim)};
}

WallTime FileIdentity::modifiedAt() const {
  return std::chrono::floor<WallTime::duration>(
      std::chrono::sys_time<std::chrono::nanoseconds>(std::chrono::nanoseconds(modified)));
}

} // namespace morvo
