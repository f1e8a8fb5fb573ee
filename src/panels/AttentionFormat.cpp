#include "panels/AttentionFormat.h"

#include <algorithm>
#include <iterator>

namespace morvo::AttentionFormat {
namespace {

using Tone = PanelTint::Tone;

bool callsForCard(const AttentionItem &item) {
  return item.kind == AttentionKind::needsConfirm || item.kind == AttentionKind::agentDone ||
         item.kind == AttentionKind::quotaPressure;
}

} // namespace

bool isShown(const std::vector<AttentionItem> &items) {
  return std::ranges::any_of(items, callsForCard);
}

std::vector<AttentionItem> listed(const std::vector<AttentionItem> &items) {
  std::vector<AttentionItem> kept;
  std::ranges::copy_if(items, std::back_inserter(kept), [](const AttentionItem &item) {
    return callsForCard(item) || item.kind == AttentionKind::calm;
  });
  return kept;
}

PanelTint accent(const std::vector<AttentionItem> &items) {
  return items.empty() ? PanelTint{Tone::foam, 0.5} : accent(items.front().kind);
}

PanelTint accent(AttentionKind kind) {
  switch (kind) {
  case AttentionKind::needsConfirm:
    return {Tone::coral, 1};
  case AttentionKind::agentDone:
    return {Tone::theme, 1};
  case AttentionKind::quotaPressure:
    return {Tone::orange, 1};
  case AttentionKind::running:
    return {Tone::foam, 0.7};
  case AttentionKind::connectorGap:
    return {Tone::yellow, 1};
  case AttentionKind::calm:
    break;
  }
  return {Tone::foam, 0.45};
}

} // namespace morvo::AttentionFormat
