#pragma once

#include "pet/stage/SpriteFrame.h"

#include <optional>

/// Files that hold one picture.
namespace morvo::FrameFile {

/// The longest side of a picture that is opened at all, in pixels.
inline constexpr int longestSide = 8192;
/// The most memory that a decoded picture may take; Qt refuses more.
inline constexpr qint64 mostBytes = qint64{128} * 1024 * 1024;

/// The whole picture as a frame, from the file's header and its end alone; nothing when the file is
/// no regular file, holds no PNG, a torn one, or one larger than `longestSide` or `mostBytes`.
[[nodiscard]] std::optional<SpriteFrame> probe(const QString &path);

/// The pixels; null when they cannot be decoded, are no PNG, or the picture is too large.
[[nodiscard]] QImage decode(const QString &path);

} // namespace morvo::FrameFile
