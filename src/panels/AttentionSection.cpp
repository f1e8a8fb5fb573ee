#include "panels/AttentionSection.h"

#include "base/VisibleText.h"
#include "panels/AttentionFormat.h"

namespace morvo {
namespace {

constexpr double groundOpacity = 0.08;
constexpr double edgeOpacity = 0.22;

/// Of the accent, which may be translucent itself.
PanelTint thinned(PanelTint tint, double opacity) { return {tint.tone, opacity}; }

} // namespace

AttentionSection::AttentionSection(QObject *parent)
    : PanelSection(parent), m_rows({"title", "detail", "dot"}) {}

void AttentionSection::connectTo(PetStore &store) {
  observe(store, &PetStore::attentionItemsChanged);
  observe(store, &PetStore::attentionHeadlineChanged);
  observe(store, &PetStore::attentionExplainChanged);
}

void AttentionSection::update(const PetStore &store, const PanelLook &look) {
  const auto items = AttentionFormat::listed(store.attentionItems());
  m_isShown = AttentionFormat::isShown(items);
  // What an agent says of itself may hold anything.
  m_headline = VisibleText::of(store.attentionHeadline());
  m_explain = VisibleText::of(store.attentionExplain());
  const PanelTint accent = AttentionFormat::accent(items);
  m_ground = look.fill(thinned(accent, groundOpacity));
  m_edge = look.fill(thinned(accent, edgeOpacity));
  QList<QVariantList> rows;
  for (const AttentionItem &item : items) {
    rows.append({VisibleText::of(item.title), VisibleText::of(item.detail),
                 look.fill(AttentionFormat::accent(item.kind))});
  }
  m_rows.show(rows);
}

} // namespace morvo
