#include "panels/PersonasSection.h"

#include "companion/Personas.h"
#include "panels/PersonaFormat.h"
#include "platform/L10n.h"

namespace morvo {

PersonasSection::PersonasSection(QObject *parent)
    : PanelSection(parent), m_choices({"label", "persona"}),
      m_customs({"persona", "name", "isCurrent", "missingBadge", "missingLine"}) {}

void PersonasSection::setEntries(PanelEntries *entries) {
  m_entries = entries;
  refresh();
}

void PersonasSection::connectTo(PetStore &store) {
  observe(store, &PetStore::personaChanged);
  observe(store, &PetStore::customPersonasChanged);
  observe(store, &PetStore::genProgressChanged);
}

void PersonasSection::update(const PetStore &store, const PanelLook &look) {
  const bool chinese = L10n::isChinese();
  const MorvoPersona current = store.persona();
  const auto customs = Personas::customs(store.setting().store());
  QList<QVariantList> choices;
  for (const MorvoPersona &persona : Personas::presets()) {
    choices.append({PersonaFormat::menuText(persona, current.id), persona.id});
  }
  QList<QVariantList> managed;
  for (const MorvoPersona &persona : customs) {
    choices.append({PersonaFormat::menuText(persona, current.id), persona.id});
    const QStringList missing =
        m_entries != nullptr ? m_entries->missingFrameSets(persona.id) : QStringList();
    managed.append({persona.id, persona.name, persona.id == current.id,
                    PersonaFormat::missingBadge(missing.size(), chinese),
                    PersonaFormat::missingLine(missing)});
  }
  m_choices.show(choices);
  m_customs.show(managed);
  m_current = PersonaFormat::menuText(current, QString());
  m_isFilling = store.genProgress().has_value();
  m_fillLabel = PersonaFormat::fillLabel(m_isFilling, chinese);
  m_warningColor = look.ink({PanelTint::Tone::orange, 0.95});
}

void PersonasSection::choose(const QString &id) {
  if (store() != nullptr) {
    store()->choosePet(id);
  }
}

void PersonasSection::createNew() {
  if (m_entries != nullptr) {
    m_entries->openNewPet(QStringLiteral("新建桌面宠物"));
  }
}

void PersonasSection::rename(const QString &id, const QString &name) {
  const QString trimmed = name.trimmed();
  if (store() != nullptr && !trimmed.isEmpty()) {
    store()->renameCustomPersona(id, trimmed);
  }
}

void PersonasSection::remove(const QString &id) {
  if (store() != nullptr) {
    store()->deleteCustomPersona(id);
  }
}

void PersonasSection::fillMissing(const QString &id) {
  if (m_entries != nullptr) {
    m_entries->fillMissingAnimations(id);
  }
}

} // namespace morvo
