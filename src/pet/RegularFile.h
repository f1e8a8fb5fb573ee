#pragma once

#include <QFile>

#include <optional>
#include <sys/stat.h>

/// Files from outside that are read on the main thread.
namespace morvo::RegularFile {

/// Opens a regular file to read, and tells of it; nothing for any other file, and for one that
/// cannot be opened. Waits for no writer, as opening a pipe would.
[[nodiscard]] std::optional<struct stat> open(const QString &path, QFile &file);

} // namespace morvo::RegularFile
