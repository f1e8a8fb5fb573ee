#pragma once

#include "base/FileLayer.h"
#include "monitor/HookError.h"

#include <expected>
#include <functional>

/// Changing a file that other programs change too.
namespace morvo::SharedFile {

/// Makes the new content of the old one, which is empty when there is no file. May be called
/// several times.
using Change = std::function<std::expected<QByteArray, HookError>(const QByteArray &)>;

/// Times a change is made because the file changed under the one before.
inline constexpr int attempts = 8;

/// Reads the file, lets `change` make its new content and writes that, atomically, also when
/// nothing changed; the folders it needs are created, an existing file keeps its mode, a symbolic
/// link stays one. When the file is found changed right before it is replaced, all of it begins
/// anew.
[[nodiscard]] std::expected<void, HookError> change(FileLayer &files, const QString &path,
                                                    const Change &change);

} // namespace morvo::SharedFile
