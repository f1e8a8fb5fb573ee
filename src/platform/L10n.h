#pragma once

#include <QString>
#include <QStringList>

/// The choice between the Chinese text and, where there is one, the English text.
namespace morvo::L10n {

/// Whether the first of the user's preferred languages is Chinese; false for an empty list.
[[nodiscard]] bool isChinese(const QStringList &preferredLanguages);
/// The same for the languages of the system.
[[nodiscard]] bool isChinese();

namespace Update {
/// Said after the user chose to ignore a build.
[[nodiscard]] QString ignored(int build, bool chinese);
} // namespace Update

} // namespace morvo::L10n
