#pragma once

#include "base/Time.h"

#include <cstdint>
#include <sys/stat.h>

namespace morvo {

/// Tells whether a file is the one that was looked at before, unchanged as far as the file system
/// knows. The time of the last change of the file's own record is part of it, since the time of the
/// last writing can be set back.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modified = 0; ///< Nanoseconds since 1970.
  std::int64_t changed = 0;  ///< Nanoseconds since 1970.

  [[nodiscard]] static FileIdentity of(const struct stat &info);

  [[nodiscard]] WallTime modifiedAt() const;
  [[nodiscard]] bool isSameFile(const FileIdentity &other) const {
    return device == other.device && inode == other.inode;
  }
  bool operator==(const FileIdentity &) const = default;
};

} // namespace morvo
