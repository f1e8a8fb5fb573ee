#pragma once

#include "pet/stage/SpriteFrame.h"

#include <optional>

/// Files that hold one picture.
namespace morvo::FrameFile {

/// The longest side of a picture that is opened at all, in pixels.
inline constexpr int longestSide = 8192;

/// The whole picture as a frame, from the file's header alone; nothing when the file is no regular
/// file, holds no picture, or one larger than `longestSide`.
[[nodiscard]] std::optional<SpriteFrame> probe(const QString &path);

/// The pixels; null when they cannot be decoded or the picture is too large.
[[nodiscard]] QImage decode(const QString &path);

} // namespace morvo::FrameFile
