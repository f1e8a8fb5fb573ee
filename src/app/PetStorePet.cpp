#include "app/PetStore.h"

#include "companion/LinePackStore.h"
#include "companion/Personas.h"
#include "companion/PetProfileStore.h"
#include "pet/FrameSetName.h"
#include "platform/SettingKeys.h"
#include "voice/VoiceProfileStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <ranges>

namespace morvo {
namespace {

constexpr double mostNeed = 100;
constexpr int smallTalk = 0;
/// Petting more often than this keeps the pet silent.
constexpr auto petTalkInterval = std::chrono::seconds(6);

void raise(double &need, double by) { need = std::min(need + by, mostNeed); }

bool isPlayable(const PetMenuAction &action) { return action.hasFrames; }
bool isNotIdle(const PetMenuAction &action) { return action.frameSet != FrameSetName::idle; }

} // namespace

bool PetStore::playPetAction(const QString &action) {
  if (m_parts.body.react(action)) {
    return true;
  }
  const auto catalog = m_parts.body.catalogActions();
  const auto entry = std::ranges::find_if(catalog, [&action](const PetMenuAction &candidate) {
    return candidate.frameSet == action || candidate.id == action;
  });
  m_reply = u'「' + (entry == catalog.end() ? action : entry->label) +
            QStringLiteral("」没有动画帧（生成时可能失败了）");
  scheduleBubbleClear();
  return false;
}

bool PetStore::playPetAction(const QStringList &prefer) {
  auto playable = m_parts.body.catalogActions();
  std::erase_if(playable, std::not_fn(isPlayable));
  if (playable.empty()) {
    m_reply = QStringLiteral("还没有任何可播动作帧");
    return false;
  }
  for (const QString &name : prefer) {
    const bool known = std::ranges::any_of(playable, [&name](const PetMenuAction &action) {
      return action.frameSet == name || action.id == name;
    });
    if (known) {
      return playPetAction(name);
    }
  }
  const auto lively = std::ranges::find_if(playable, isNotIdle);
  return playPetAction(lively == playable.end() ? playable.front().frameSet : lively->frameSet);
}

void PetStore::playRandomPetAction() {
  auto choices = m_parts.body.catalogActions();
  std::erase_if(choices, [](const PetMenuAction &action) {
    return !isPlayable(action) || !isNotIdle(action);
  });
  if (choices.empty()) {
    m_reply = QStringLiteral("没有可表演的动作");
    scheduleBubbleClear();
    return;
  }
  const PetMenuAction &choice = choices[m_parts.random.below(choices.size())];
  if (playPetAction(choice.frameSet)) {
    propose(QStringLiteral("来，看我「") + choice.label + QStringLiteral("」！"), smallTalk, false,
            m_persona.value().name);
  }
}

void PetStore::petTapped() {
  const bool played =
      playPetAction({FrameSetName::petted, FrameSetName::greet, FrameSetName::celebrate,
                     FrameSetName::watching, FrameSetName::alert});
  m_parts.body.emitHearts();
  Needs needs = m_needs;
  raise(needs.affinity, 4);
  raise(needs.bond, 3);
  raise(needs.energy, 2);
  m_needs = needs;
  m_care.recordPet();

  const Instant now = m_parts.clock.instant();
  if (!m_lastPetTap || now - *m_lastPetTap > petTalkInterval) {
    const QString line = LocalBrain::pettedLine(linePackOrNull(), m_parts.random);
    if (!line.isEmpty()) {
      propose(line, smallTalk, false, m_persona.value().name);
    } else if (!played) {
      m_reply = QStringLiteral("摸摸～");
    }
    m_lastPetTap = now;
  }
  if (const auto milestone = m_care.consumeMilestoneIfAny()) {
    propose(*milestone, smallTalk, false, m_persona.value().name);
  }
  refreshPetMoodOnly();
}

void PetStore::feed() {
  Needs needs = m_needs;
  raise(needs.belly, 18);
  raise(needs.energy, 6);
  raise(needs.affinity, 2);
  m_needs = needs;
  m_care.recordFeed();
  const bool played = playPetAction(
      {FrameSetName::celebrate, FrameSetName::greet, FrameSetName::petted, FrameSetName::alert});
  m_parts.body.emitHearts();
  if (!played) {
    m_reply = QStringLiteral("吃饱啦");
  }
  refreshPetMoodOnly();
  reportInteraction(QStringLiteral("feed"));
}

QCoro::Task<> PetStore::reportInteraction(QString type) {
  const std::stop_token stop = m_stop.get_token();
  if (!m_parts.cloud) {
    co_return;
  }
  const auto quota = co_await m_parts.cloud->interact(std::move(type));
  if (!stop.stop_requested() && quota) {
    m_quota = *quota;
  }
}

void PetStore::refreshPetMoodOnly() {
  m_mood = LocalBrain::deriveMood(m_needs);
  m_parts.body.setMood(m_mood);
}

void PetStore::setPetScale(double scale) {
  const double clamped = Setting::petScaleLimits.take(scale);
  m_parts.setting.store().set(SettingKeys::petScale, clamped);
  m_petScale = clamped;
}

void PetStore::setPetOpacity(double opacity) {
  const double clamped = Setting::petOpacityLimits.take(opacity);
  m_parts.setting.store().set(SettingKeys::petOpacity, clamped);
  m_petOpacity = clamped;
}

std::vector<PetChoice> PetStore::petChoices() const {
  std::vector<PetChoice> choices;
  const auto add = [&](const MorvoPersona &persona) {
    choices.push_back({persona.id, persona.name, persona.id == m_persona.value().id});
  };
  std::ranges::for_each(Personas::presets(), add);
  std::ranges::for_each(Personas::customs(m_parts.setting.store()), add);
  return choices;
}

void PetStore::choosePet(const QString &id) {
  if (const auto persona = Personas::find(m_parts.setting.store(), id)) {
    setPersona(*persona);
  }
}

void PetStore::quitApp() { QCoreApplication::quit(); }

void PetStore::setPersona(const MorvoPersona &persona) {
  m_persona = persona;
  Personas::select(m_parts.setting.store(), persona.id);
  m_profile = PetProfileStore::load(m_parts.files, persona.id);
  m_parts.body.setPersona(persona.id);
  loadLinePack();
  m_voiceProfile =
      VoiceProfileStore::load(m_parts.files.candidates(persona.id, QStringLiteral("voice.json")));
  m_messages = std::vector<ChatMessage>();
}

void PetStore::renameCustomPersona(const QString &id, const QString &name) {
  SettingsStore &settings = m_parts.setting.store();
  Personas::rename(settings, id, name);
  if (m_persona.value().id == id) {
    m_persona = Personas::find(settings, id).value_or(m_persona.value());
  }
  Q_EMIT customPersonasChanged();
}

void PetStore::deleteCustomPersona(const QString &id) {
  SettingsStore &settings = m_parts.setting.store();
  Personas::deleteCustom(settings, m_parts.files, id);
  if (m_persona.value().id == id && !Personas::find(settings, id)) {
    setPersona(Personas::morvo());
  }
  Q_EMIT customPersonasChanged();
}

void PetStore::loadLinePack() {
  m_linePack = LinePackStore::load(m_parts.files, m_persona.value().id);
}

} // namespace morvo
