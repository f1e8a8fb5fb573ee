#pragma once

#include "base/Time.h"
#include "usage/LogFile.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

/// The logs that coding agents write of their sessions, found and read without waiting for anything
/// but the disk. Any thread. What cannot be looked at is left out, without a word.
namespace morvo::SessionLogs {

/// No more files are collected than this.
inline constexpr std::size_t mostFiles = 80;

/// The regular files below `root` that are called "….jsonl" and were written within the last 15
/// minutes, those of a folder before those of its subfolders, each by name. `root` may be a
/// symbolic link; none below it is followed.
[[nodiscard]] std::vector<LogFile> recentFiles(const QString &root, WallTime now,
                                               const std::stop_token &stop = {});

/// The last `bytes` of a regular file, all of it when it is shorter.
[[nodiscard]] QByteArray tail(const std::string &path, qsizetype bytes);

} // namespace morvo::SessionLogs
