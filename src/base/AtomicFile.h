#pragma once

#include "base/FileLayer.h"

#include <optional>

/// Writing a file so that readers see the old content or the new one whole, whatever happens.
namespace morvo::AtomicFile {

struct Options {
  /// The mode of a file that does not exist yet (the process's mask is not applied); an existing
  /// file keeps its own unless `forceMode` is set.
  std::uint32_t mode = 0644;
  bool forceMode = false;
  /// Missing parent directories are created with this mode.
  std::uint32_t directoryMode = 0755;
  /// Whether the content is on the disk when the call returns, which takes its time. Without it a
  /// power failure may leave the file old, empty or gone.
  bool durable = true;
  /// Whether a symbolic link at the path leads to the file; else it is refused, with ELOOP.
  bool followLinks = true;
};

/// Writes `content` to a temporary file beside `path`, syncs it, and renames it over `path`.
/// A symbolic link stays a link: the file it points to is replaced, unless links are refused. The
/// old file's mode is kept, and its owner where the process may. On any failure the old file is
/// whole and no temporary file is left, unless the process dies in between.
[[nodiscard]] FileLayer::Result<void> write(FileLayer &files, const QString &path,
                                            const QByteArray &content, const Options &options = {});

/// The same, but only if the file holds `expected` right before it is replaced, or does not exist
/// where nothing is expected. False when it does not: then nothing was written. What changes the
/// file between that look and the renaming, two calls later, is lost.
[[nodiscard]] FileLayer::Result<bool> replaceIfUnchanged(FileLayer &files, const QString &path,
                                                         const std::optional<QByteArray> &expected,
                                                         const QByteArray &content,
                                                         const Options &options = {});

/// The file's content; nothing when there is no file.
[[nodiscard]] FileLayer::Result<std::optional<QByteArray>> present(FileLayer &files,
                                                                   const QString &path);

} // namespace morvo::AtomicFile
