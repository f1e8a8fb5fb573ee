#pragma once

#include <QRectF>
#include <QString>

#include <optional>

/// The crop square of a built-in pet, measured at build time and kept beside its frames, so that
/// no start of the program decodes them all.
namespace morvo::ContentFile {

/// The square that `write` left in the pet's folder; nothing when there is no file, or it does not
/// hold a rectangle within the frame.
[[nodiscard]] std::optional<QRectF> read(const QString &petFolder);

/// Replaces the file in the pet's folder. False when it could not be written.
[[nodiscard]] bool write(const QString &petFolder, const QRectF &square);

} // namespace morvo::ContentFile
