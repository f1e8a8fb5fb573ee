#pragma once

#include "base/Time.h"
#include "usage/FileIdentity.h"

#include <cstddef>
#include <limits>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace morvo {

/// A log found below a folder.
struct LogFile {
  std::string path;
  FileIdentity identity;
  bool hasOtherNames = false; ///< By hard links.

  static constexpr std::size_t any = std::numeric_limits<std::size_t>::max();

  /// The regular files at any depth below `folder` that have one of the extensions (without their
  /// dot) and were changed at `since` or later, the first `most` of them: those of a folder before
  /// those of its subfolders, each by name. The folder itself may be a symbolic link; those below
  /// it are not followed. What cannot be entered is left out.
  [[nodiscard]] static std::vector<LogFile>
  changedSince(const std::string &folder, std::span<const std::string_view> extensions,
               WallTime since, const std::stop_token &stop, std::size_t most = any);
};

} // namespace morvo
