#pragma once

#include "base/FileLayer.h"

#include <QString>

#include <optional>

namespace morvo {

/// Why an agent could not be connected or disconnected. Whatever the kind, the file named is as it
/// was before.
struct HookError {
  enum class Kind {
    scriptNotWritten, ///< A script under `~/.morvo` could not be written.
    fileUnreadable,   ///< The agent's file exists but cannot be read.
    fileNotUtf8,      ///< The agent's file would be JSON, were all of its bytes UTF-8.
    fileTooDeep,      ///< The agent's file is nested deeper than the program follows.
    configConflict,   ///< Codex's configuration is written in a way that the program does not
                      ///< understand well enough to enable hooks without spoiling the file.
    fileBusy,         ///< The file kept changing while it was to be changed.
    fileNotWritten,   ///< The agent's file could not be written.
  };

  Kind kind = Kind::fileUnreadable;
  /// The file in question, absolute.
  QString path;
  /// What the system said, where it was asked.
  std::optional<FileError> cause;

  /// One Chinese sentence for the user, without a full stop; holds no file content.
  [[nodiscard]] QString message() const;
  bool operator==(const HookError &) const = default;
};

} // namespace morvo
