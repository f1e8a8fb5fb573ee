#include "app/PetStore.h"

#include "companion/Personas.h"
#include "companion/PetProfileStore.h"
#include "monitor/HookScript.h"
#include "pet/Growth.h"
#include "platform/MorvoHome.h"
#include "platform/SecretItems.h"
#include "platform/SettingKeys.h"
#include "voice/VoiceProfileStore.h"

#include <QDateTime>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvo {
namespace {

constexpr auto cloudPeriod = std::chrono::seconds(10);
constexpr auto fleetPeriod = std::chrono::seconds(12);
constexpr auto energyPeriod = std::chrono::seconds(120);
constexpr auto demoTapDelay = std::chrono::seconds(3);

/// Care less than this long ago keeps the pet fresh.
constexpr double freshHours = 2;
constexpr double energyPerHour = 0.5;
constexpr double energyFloor = 25;
constexpr double leastEnergyChange = 0.5;

} // namespace

PetStore::PetStore(Parts parts)
    : m_parts(std::move(parts)), m_gate(m_parts.setting), m_care(m_parts.setting, m_parts.clock) {
  const Setting &setting = m_parts.setting;
  m_persona = Personas::selected(setting.store());
  m_growth = Growth::state(setting, doneToday());
  m_petScale = setting.petScale();
  m_petOpacity = setting.petOpacity();

  // The pet shows what the store says, from the first word on.
  connect(this, &PetStore::replyChanged, this, [this] { m_parts.body.setBubble(m_reply); });
  connect(this, &PetStore::petScaleChanged, this, [this] { m_parts.body.setScale(m_petScale); });
  connect(this, &PetStore::petOpacityChanged, this,
          [this] { m_parts.body.setOpacity(m_petOpacity); });
  m_parts.body.setScale(m_petScale);
  m_parts.body.setOpacity(m_petOpacity);

  Growth::migrateResetIfNeeded(setting);
  start();
  refreshHookFlags();
  m_parts.body.setPersona(m_persona.value().id);
  loadLinePack();
  m_voiceProfile = VoiceProfileStore::load(
      m_parts.files.candidates(m_persona.value().id, QStringLiteral("voice.json")));
  m_profile = PetProfileStore::load(m_parts.files, m_persona.value().id);
  m_growth = Growth::state(setting, doneToday());
  showDesktopPet();
  petAfterDemoDelay();
}

PetStore::~PetStore() {
  // The loops end here; nothing of them runs on a store that is gone.
  m_stop.request_stop();
}

void PetStore::start() {
  cloudLoop(m_stop.get_token());
  // The first round may come before the keyring has told who is logged in.
  m_parts.secrets.onLoaded([guard = QPointer(this)] {
    if (guard && guard->m_parts.cloud) {
      guard->load(true);
    }
  });
  fleetLoop(m_stop.get_token());
  energyLoop(m_stop.get_token());
  const HookContext &hooks = m_parts.hooks;
  MorvoHome::ensure(hooks.home);
  if (HookScript::alreadyInstalled(hooks.home)) {
    // An update rolls the scripts forward; where they cannot be written the old ones go on.
    static_cast<void>(HookScript::install(hooks));
  }
  startInbox();
  usageLoop(m_stop.get_token());
}

void PetStore::startInbox() {
  if (m_parts.inbox) {
    m_parts.inbox->start([this](const QList<QJsonObject> &signals) { handleHookSignals(signals); });
  }
}

void PetStore::showDesktopPet() {
  m_showPet = m_parts.scheduler.after(Duration::zero(), [this] {
    m_parts.body.setVisible(m_parts.setting.boolean(SettingKeys::desktopPet, true));
  });
}

void PetStore::petAfterDemoDelay() {
  if (m_parts.setting.environment().isOne(QStringLiteral("MORVO_DEMO_PET"))) {
    m_demoTap = m_parts.scheduler.after(demoTapDelay, [this] { petTapped(); });
  }
}

// Each loop first lets the start-up finish, then goes round for as long as the store lives.

QCoro::Task<> PetStore::cloudLoop(std::stop_token stop) {
  bool running = co_await m_parts.scheduler.sleep(Duration::zero(), stop);
  while (running) {
    co_await load(true);
    if (stop.stop_requested()) {
      co_return;
    }
    running = co_await m_parts.scheduler.sleep(cloudPeriod, stop);
  }
}

QCoro::Task<> PetStore::fleetLoop(std::stop_token stop) {
  bool running = co_await m_parts.scheduler.sleep(Duration::zero(), stop);
  while (running) {
    if (!followsFleet()) {
      m_fleet = std::vector<FleetSession>();
    } else if (!m_scansFleet) {
      scanFleet(stop);
    }
    refreshAttention();
    running = co_await m_parts.scheduler.sleep(fleetPeriod, stop);
  }
}

bool PetStore::followsFleet() const {
  return m_parts.fleet && m_parts.setting.boolean(SettingKeys::fleet, false);
}

/// Beside the loop: a disk that hangs must neither keep old news nor what was switched off.
QCoro::Task<> PetStore::scanFleet(std::stop_token stop) {
  m_scansFleet = true;
  std::vector<FleetSession> sessions = co_await m_parts.fleet->scan();
  if (stop.stop_requested()) {
    co_return;
  }
  m_scansFleet = false;
  if (followsFleet()) {
    m_fleet = std::move(sessions);
    refreshAttention();
  }
}

QCoro::Task<> PetStore::energyLoop(std::stop_token stop) {
  bool running = co_await m_parts.scheduler.sleep(Duration::zero(), stop);
  while (running) {
    drainEnergy();
    running = co_await m_parts.scheduler.sleep(energyPeriod, stop);
  }
}

void PetStore::show(Picture picture) {
  const auto put = [](auto &field, auto &value) {
    if (value) {
      field = *std::move(value);
    }
  };
  put(m_connected, picture.connected);
  put(m_chatHealth, picture.chatHealth);
  put(m_mood, picture.mood);
  put(m_needs, picture.needs);
  put(m_quota, picture.quota);
  put(m_reply, picture.reply);
  put(m_thinking, picture.thinking);
  put(m_persona, picture.persona);
  put(m_usage, picture.usage);
  put(m_fleet, picture.fleet);
  put(m_messages, picture.messages);
  if (picture.agents) {
    publish(*std::move(picture.agents));
  }
  refreshAttention();
}

/// The decrement applies anew to the already lowered value, so a long absence drains quickly.
void PetStore::drainEnergy() {
  const std::chrono::duration<double, std::ratio<3600>> sinceCare =
      m_parts.clock.now() - m_care.lastCareAt();
  const double hours = std::max(sinceCare.count(), 0.0);
  Needs needs = m_needs;
  const double target =
      hours > freshHours
          ? std::max(needs.energy - std::trunc((hours - freshHours) * energyPerHour), energyFloor)
          : needs.energy;
  if (std::abs(target - needs.energy) >= leastEnergyChange) {
    needs.energy = target;
    m_needs = needs;
    refreshPetMoodOnly();
  }
}

QCoro::Task<> PetStore::load(bool updateChatHealth) {
  const std::stop_token stop = m_stop.get_token();
  std::optional<Quota> quota;
  if (m_parts.cloud) {
    m_parts.cloud->setAccessToken(
        m_parts.secrets.read(SecretItems::authService, SecretItems::accessTokenAccount));
    quota = co_await m_parts.cloud->sync();
    if (stop.stop_requested()) {
      co_return;
    }
  }
  m_connected = quota.has_value();
  if (!quota) {
    if (updateChatHealth) {
      m_chatHealth = ChatHealth::serverOffline;
    }
    co_return;
  }
  if (updateChatHealth && !m_thinking) {
    m_chatHealth = ChatHealth::ready;
  }
  m_quota = *quota;
  if (!std::exchange(m_bootstrapped, true)) {
    refreshPetMoodOnly();
  }
}

int PetStore::doneToday() const {
  const Setting &setting = m_parts.setting;
  const auto today =
      QDateTime::fromMSecsSinceEpoch(m_parts.clock.now().time_since_epoch().count()).date();
  return setting.str(SettingKeys::doneDate, {}) == today.toString(Qt::ISODate)
             ? setting.integer(SettingKeys::doneCount, 0)
             : 0;
}

} // namespace morvo
