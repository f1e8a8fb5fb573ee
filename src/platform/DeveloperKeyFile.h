#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The files of `NAME=value` lines in `~/.morvo` in which developers keep service keys.
namespace morvo::DeveloperKeyFile {

/// What stands behind "NAME=" in the first line that holds it anywhere, without blanks, quotes and
/// carriage returns at both ends. Nothing when no line holds it, when nothing is left, or when the
/// content is no UTF-8.
[[nodiscard]] std::optional<QString> value(const QByteArray &content, const QString &name);

} // namespace morvo::DeveloperKeyFile
