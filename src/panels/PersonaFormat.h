#pragma once

#include "companion/MorvoPersona.h"

#include <QStringList>

/// The words of the list of personas.
namespace morvo::PersonaFormat {

/// "深海", "二次元", or "自定义".
[[nodiscard]] QString tierWord(int tier);
/// "✓ 小沃 · 深海"; the mark for the current persona alone.
[[nodiscard]] QString menuText(const MorvoPersona &persona, const QString &currentId);
/// How many action groups are missing; empty for none.
[[nodiscard]] QString missingBadge(qsizetype count, bool chinese);
/// Which ones; empty for none.
[[nodiscard]] QString missingLine(const QStringList &groups);
/// Of the button that makes them, at rest and while it works.
[[nodiscard]] QString fillLabel(bool isFilling, bool chinese);

} // namespace morvo::PersonaFormat
