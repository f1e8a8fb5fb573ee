#pragma once

#include <QImage>
#include <QString>

#include <expected>

/// Frames as files.
namespace morvo::FrameWriter {

/// Writes the picture as a small PNG: of few colours, picked from its own. The same pixels
/// always give the same bytes. The error says what is wrong with the file.
[[nodiscard]] std::expected<void, QString> write(const QImage &picture, const QString &path);

} // namespace morvo::FrameWriter
