#pragma once

#include "companion/ChatHealth.h"
#include "panels/PanelTint.h"

#include <QString>

#include <cstdint>

/// The words and figures that more than one part of the panels shows.
namespace morvo::PanelTexts {

/// The mood in words; a mood without any stands as it is.
[[nodiscard]] QString moodLabel(const QString &mood);
/// The colour of a mood.
[[nodiscard]] PanelTint accent(const QString &mood);
[[nodiscard]] QString chatHealth(ChatHealth health);
/// Whether the panel says it at all: only what is wrong.
[[nodiscard]] bool showsChatHealth(ChatHealth health);
/// "999", "12K", "3.4M".
[[nodiscard]] QString fmtTokens(std::int64_t count);

} // namespace morvo::PanelTexts
