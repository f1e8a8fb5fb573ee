#pragma once

#include "monitor/AttentionItem.h"
#include "panels/PanelTint.h"

#include <vector>

/// When the card of what deserves the eye stands in the panel, with what, and in which colour.
namespace morvo::AttentionFormat {

/// A quiet state alone shows no card.
[[nodiscard]] bool isShown(const std::vector<AttentionItem> &items);
/// Those that the card lists.
[[nodiscard]] std::vector<AttentionItem> listed(const std::vector<AttentionItem> &items);
/// Of the card, by the first item that it lists.
[[nodiscard]] PanelTint accent(const std::vector<AttentionItem> &items);
[[nodiscard]] PanelTint accent(AttentionKind kind);

} // namespace morvo::AttentionFormat
