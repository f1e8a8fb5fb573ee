#pragma once

#include "app/ChatMessage.h"
#include "app/PermRequest.h"
#include "base/Clock.h"
#include "base/RandomSource.h"
#include "base/Scheduler.h"
#include "cloud/PetCloud.h"
#include "companion/ChatHealth.h"
#include "companion/LinePack.h"
#include "companion/LocalBrain.h"
#include "companion/MorvoPersona.h"
#include "companion/PetProfile.h"
#include "monitor/AgentConnector.h"
#include "monitor/AttentionEngine.h"
#include "monitor/AttentionItem.h"
#include "monitor/AttentionSnapshot.h"
#include "monitor/FleetSource.h"
#include "monitor/HookContext.h"
#include "monitor/ProactiveGate.h"
#include "monitor/SignalSource.h"
#include "monitor/SourceLoad.h"
#include "pet/GrowthState.h"
#include "pet/Needs.h"
#include "pet/PetBody.h"
#include "pet/PetCare.h"
#include "pet/PetFiles.h"
#include "pet/PetInteractions.h"
#include "platform/Notifier.h"
#include "platform/SecretStore.h"
#include "platform/Setting.h"
#include "usage/UsageSource.h"
#include "usage/UsageStats.h"
#include "voice/Speech.h"

#include <QBindable>
#include <QCoroTask>
#include <QObject>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace morvo {

/// The one central store: panels bind to its published state, and all long-lived activity hangs off
/// it. It owns what people see; every rule that can be stated without it stands in a subsystem.
///
/// Main thread. One instance for the life of the process. Each published field tells of each change
/// by its signal.
class PetStore final : public QObject, public PetInteractions {
  Q_OBJECT
  Q_PROPERTY(QString mood READ mood NOTIFY moodChanged)
  Q_PROPERTY(morvo::Needs needs READ needs NOTIFY needsChanged)
  Q_PROPERTY(morvo::Quota quota READ quota NOTIFY quotaChanged)
  Q_PROPERTY(bool connected READ isConnected NOTIFY connectedChanged)
  Q_PROPERTY(QString reply READ reply NOTIFY replyChanged)
  Q_PROPERTY(bool thinking READ isThinking NOTIFY thinkingChanged)
  Q_PROPERTY(morvo::ChatHealth chatHealth READ chatHealth NOTIFY chatHealthChanged)
  Q_PROPERTY(std::vector<morvo::ChatMessage> messages READ messages NOTIFY messagesChanged)
  Q_PROPERTY(QStringList sources READ sources NOTIFY sourcesChanged)
  Q_PROPERTY(std::vector<morvo::DetectedAgent> detected READ detected NOTIFY detectedChanged)
  Q_PROPERTY(bool claudeConnected READ claudeConnected NOTIFY claudeConnectedChanged)
  Q_PROPERTY(bool codexConnected READ codexConnected NOTIFY codexConnectedChanged)
  Q_PROPERTY(bool geminiConnected READ geminiConnected NOTIFY geminiConnectedChanged)
  Q_PROPERTY(bool cursorConnected READ cursorConnected NOTIFY cursorConnectedChanged)
  Q_PROPERTY(morvo::MorvoPersona persona READ persona NOTIFY personaChanged)
  Q_PROPERTY(std::vector<morvo::FleetSession> fleet READ fleet NOTIFY fleetChanged)
  Q_PROPERTY(std::vector<morvo::SourceLoad> sourceLoads READ sourceLoads NOTIFY sourceLoadsChanged)
  Q_PROPERTY(std::vector<morvo::AttentionItem> attentionItems READ attentionItems NOTIFY
                 attentionItemsChanged)
  Q_PROPERTY(QString attentionHeadline READ attentionHeadline NOTIFY attentionHeadlineChanged)
  Q_PROPERTY(QString attentionExplain READ attentionExplain NOTIFY attentionExplainChanged)
  Q_PROPERTY(morvo::GrowthState growth READ growth NOTIFY growthChanged)
  Q_PROPERTY(double petScale READ petScale NOTIFY petScaleChanged)
  Q_PROPERTY(double petOpacity READ petOpacity NOTIFY petOpacityChanged)
  Q_PROPERTY(std::optional<morvo::PermRequest> pendingApproval READ pendingApproval NOTIFY
                 pendingApprovalChanged)
  Q_PROPERTY(morvo::VoiceProfile voiceProfile READ voiceProfile NOTIFY voiceProfileChanged)
  Q_PROPERTY(morvo::VoiceHealth voiceHealth READ voiceHealth NOTIFY voiceHealthChanged)
  Q_PROPERTY(morvo::PetProfile profile READ profile NOTIFY profileChanged)
  Q_PROPERTY(bool cloning READ isCloning NOTIFY cloningChanged)
  Q_PROPERTY(std::optional<QString> genProgress READ genProgress NOTIFY genProgressChanged)
  Q_PROPERTY(double genFraction READ genFraction NOTIFY genFractionChanged)
  Q_PROPERTY(std::optional<QString> genError READ genError NOTIFY genErrorChanged)
  Q_PROPERTY(bool productAccessGranted READ productAccessGranted NOTIFY productAccessGrantedChanged)
  Q_PROPERTY(QString chatAccessLabel READ chatAccessLabel NOTIFY chatAccessLabelChanged)
  Q_PROPERTY(QString imageAccessLabel READ imageAccessLabel NOTIFY imageAccessLabelChanged)
  Q_PROPERTY(std::optional<QString> accessApplyMessage READ accessApplyMessage NOTIFY
                 accessApplyMessageChanged)
  Q_PROPERTY(morvo::UsageStats usage READ usage NOTIFY usageChanged)

public:
  /// What the store works with. The references must outlive it.
  struct Parts {
    const Clock &clock;
    Scheduler &scheduler;
    RandomSource &random;
    Setting setting;
    PetFiles files;
    HookContext hooks;
    SecretStore &secrets;
    Notifier &notifier;
    PetBody &body;
    /// The agents that can be connected, in the order in which they are listed.
    std::vector<std::unique_ptr<AgentConnector>> connectors;
    std::unique_ptr<SignalSource> inbox;
    // Not every build has these: without the cloud the store reads as offline, without speech it
    // stays silent, without the scans their lists stay empty.
    std::unique_ptr<PetCloud> cloud = nullptr;
    Speech *speech = nullptr;
    std::unique_ptr<FleetSource> fleet = nullptr;
    std::unique_ptr<UsageSource> usage = nullptr;
    /// Makes the figures that people see of what was captured.
    std::function<UsageStats(const UsageSnapshot &)> measure = [](const UsageSnapshot &) {
      return UsageStats();
    };
    /// Estimates an agent's load where it gives no official figure, and may learn by it: asked once
    /// for each count that is taken. One that has learned nothing yet says half.
    AttentionEngine::LearnedPct learnedPct = [](std::int64_t /*windowTokens*/) { return 50; };
  };

  struct RecentDone {
    QString agent;
    QString label;
    Instant at;
    bool operator==(const RecentDone &) const = default;
  };
  struct SoftConfirm {
    QString agent;
    QString summary;
    Instant at;
    bool operator==(const SoftConfirm &) const = default;
  };

  /// State that usually comes from elsewhere, for a picture of the panel. What is missing stays.
  struct Picture {
    std::optional<bool> connected;
    std::optional<ChatHealth> chatHealth;
    std::optional<QString> mood;
    std::optional<Needs> needs;
    std::optional<Quota> quota;
    std::optional<QString> reply;
    std::optional<bool> thinking;
    std::optional<MorvoPersona> persona;
    std::optional<std::vector<DetectedAgent>> agents;
    std::optional<UsageStats> usage;
    std::optional<std::vector<FleetSession>> fleet;
    std::optional<std::vector<ChatMessage>> messages;
  };

  /// Does all of the store's start-up: state from disk, loops, inbox, pet.
  explicit PetStore(Parts parts);
  PetStore(const PetStore &) = delete;
  PetStore &operator=(const PetStore &) = delete;
  ~PetStore() override;

  // Published state.
  [[nodiscard]] QString mood() const { return m_mood.value(); }
  [[nodiscard]] Needs needs() const { return m_needs.value(); }
  [[nodiscard]] Quota quota() const { return m_quota.value(); }
  [[nodiscard]] bool isConnected() const { return m_connected.value(); }
  [[nodiscard]] QString reply() const { return m_reply.value(); }
  [[nodiscard]] bool isThinking() const { return m_thinking.value(); }
  [[nodiscard]] ChatHealth chatHealth() const { return m_chatHealth.value(); }
  [[nodiscard]] std::vector<ChatMessage> messages() const { return m_messages.value(); }
  [[nodiscard]] QStringList sources() const { return m_sources.value(); }
  [[nodiscard]] std::vector<DetectedAgent> detected() const { return m_detected.value(); }
  [[nodiscard]] bool claudeConnected() const { return m_claudeConnected.value(); }
  [[nodiscard]] bool codexConnected() const { return m_codexConnected.value(); }
  [[nodiscard]] bool geminiConnected() const { return m_geminiConnected.value(); }
  [[nodiscard]] bool cursorConnected() const { return m_cursorConnected.value(); }
  [[nodiscard]] MorvoPersona persona() const { return m_persona.value(); }
  [[nodiscard]] std::vector<FleetSession> fleet() const { return m_fleet.value(); }
  [[nodiscard]] std::vector<SourceLoad> sourceLoads() const { return m_sourceLoads.value(); }
  [[nodiscard]] std::vector<AttentionItem> attentionItems() const {
    return m_attentionItems.value();
  }
  [[nodiscard]] QString attentionHeadline() const { return m_attentionHeadline.value(); }
  [[nodiscard]] QString attentionExplain() const { return m_attentionExplain.value(); }
  [[nodiscard]] GrowthState growth() const { return m_growth.value(); }
  [[nodiscard]] double petScale() const override { return m_petScale.value(); }
  [[nodiscard]] double petOpacity() const { return m_petOpacity.value(); }
  [[nodiscard]] std::optional<PermRequest> pendingApproval() const {
    return m_pendingApproval.value();
  }
  [[nodiscard]] VoiceProfile voiceProfile() const { return m_voiceProfile.value(); }
  [[nodiscard]] VoiceHealth voiceHealth() const { return m_voiceHealth.value(); }
  [[nodiscard]] PetProfile profile() const { return m_profile.value(); }
  [[nodiscard]] bool isCloning() const { return m_cloning.value(); }
  [[nodiscard]] std::optional<QString> genProgress() const { return m_genProgress.value(); }
  [[nodiscard]] double genFraction() const { return m_genFraction.value(); }
  [[nodiscard]] std::optional<QString> genError() const { return m_genError.value(); }
  [[nodiscard]] bool productAccessGranted() const { return m_productAccessGranted.value(); }
  [[nodiscard]] QString chatAccessLabel() const { return m_chatAccessLabel.value(); }
  [[nodiscard]] QString imageAccessLabel() const { return m_imageAccessLabel.value(); }
  [[nodiscard]] std::optional<QString> accessApplyMessage() const {
    return m_accessApplyMessage.value();
  }
  [[nodiscard]] UsageStats usage() const { return m_usage.value(); }

  // State that is not published.
  [[nodiscard]] const std::optional<RecentDone> &recentDone() const { return m_recentDone; }
  [[nodiscard]] const std::optional<SoftConfirm> &softConfirm() const { return m_softConfirm; }
  [[nodiscard]] const std::optional<LinePack> &linePack() const { return m_linePack; }
  [[nodiscard]] const ProactiveGate &gate() const { return m_gate; }
  /// Whether a `load` has ever reached the cloud.
  [[nodiscard]] bool isBootstrapped() const { return m_bootstrapped; }
  /// Tasks done today, as something outside the program counts them; 0 when nothing does.
  [[nodiscard]] int doneToday() const;

  // What the pet says and does.
  /// The only way a proactive line reaches the bubble and the voice.
  void say(const QString &text);
  /// Sets the bubble's text without a voice, as a plain answer to something the user did.
  void setReply(const QString &text) override { m_reply = text; }
  /// Restarts the bubble's clear timer.
  void scheduleBubbleClear();
  /// Runs a catalogue action; says so in the bubble and gives false when it has no frames.
  bool playPetAction(const QString &action) override;
  /// Runs the first of the preferred actions that has frames, else any that is not idle.
  bool playPetAction(const QStringList &prefer);
  /// Re-derives the mood from the needs.
  void refreshPetMoodOnly();

  // What the user does; `PetInteractions`.
  void petTapped() override;
  void feed() override;
  void playRandomPetAction() override;
  void setPetScale(double scale) override;
  [[nodiscard]] std::vector<PetChoice> petChoices() const override;
  void choosePet(const QString &id) override;
  void quitApp() override;
  void setPetOpacity(double opacity);
  void setPersona(const MorvoPersona &persona);
  /// Another name for one of the user's personas. What the cloud knows keeps the old one until it
  /// is told the next time.
  void renameCustomPersona(const QString &id, const QString &name);
  /// Takes one of the user's personas away with all its files; the default one follows a current
  /// one.
  void deleteCustomPersona(const QString &id);
  /// Shows the pet on the desktop. Changes no setting.
  void showPet() { m_parts.body.setVisible(true); }

  /// Publishes the picture's state as it stands there; the loops go on.
  void show(Picture picture);

  // Agents.
  /// Reads from the agents' files who is connected.
  void refreshHookFlags();
  /// Connects or disconnects the agent's hook. The flag then shows what its file really holds; the
  /// error, if any, is given back for whoever wants to word it.
  std::expected<void, HookError> setAgentConnected(const QString &agentId, bool on);
  void setClaudeConnected(bool on);
  void setCodexConnected(bool on);
  void setGeminiConnected(bool on);
  void setCursorConnected(bool on);
  // Usage.
  /// Reads what the agents burned, whatever the settings say, and publishes it.
  QCoro::Task<> captureUsage();
  /// Looks which agents are there and connected. Reads their logs only when `deep` or when the
  /// user has switched the capture on.
  QCoro::Task<> scanSourcesOnly(bool deep);
  /// Turns the approval hook of Claude Code on or off. The setting that the switch shows is the
  /// caller's to write, first: a failed change leaves the two apart.
  std::expected<void, HookError> setActConnected(bool on) const;
  /// Answers the request that waits, if one does, and takes what waits for a confirmation off the
  /// list.
  void decideApproval(bool allow);
  /// All that is going on now, as the attention engine is told of it.
  [[nodiscard]] AttentionSnapshot attentionSnapshot() const;
  /// Draws what deserves the user's eye from the present state, and lets go of old news.
  void refreshAttention();

  /// The settings, for the panels, which show and write some of them.
  [[nodiscard]] const Setting &setting() const { return m_parts.setting; }
  /// The time and the timers that the panels' models share with the store.
  [[nodiscard]] const Clock &clock() const { return m_parts.clock; }
  [[nodiscard]] Scheduler &scheduler() const { return m_parts.scheduler; }

  /// To be called by whoever changed the appearance's setting; the whole application follows.
  void announceAppearanceChange() { Q_EMIT appearanceChanged(); }

  // Cloud.
  /// Pulls the account's state.
  QCoro::Task<> load(bool updateChatHealth);

Q_SIGNALS:
  void moodChanged();
  void needsChanged();
  void quotaChanged();
  void connectedChanged();
  void replyChanged();
  void thinkingChanged();
  void chatHealthChanged();
  void messagesChanged();
  void sourcesChanged();
  void detectedChanged();
  void claudeConnectedChanged();
  void codexConnectedChanged();
  void geminiConnectedChanged();
  void cursorConnectedChanged();
  void personaChanged();
  /// The list of the user's own personas has changed.
  void customPersonasChanged();
  void fleetChanged();
  void sourceLoadsChanged();
  void attentionItemsChanged();
  void attentionHeadlineChanged();
  void attentionExplainChanged();
  void growthChanged();
  void petScaleChanged();
  void petOpacityChanged();
  void pendingApprovalChanged();
  void voiceProfileChanged();
  void voiceHealthChanged();
  void profileChanged();
  void cloningChanged();
  void genProgressChanged();
  void genFractionChanged();
  void genErrorChanged();
  void productAccessGrantedChanged();
  void chatAccessLabelChanged();
  void imageAccessLabelChanged();
  void accessApplyMessageChanged();
  void usageChanged();
  /// The wanted appearance has changed.
  void appearanceChanged();

private:
  void start();
  void startInbox();
  void loadLinePack();
  void showDesktopPet();
  void petAfterDemoDelay();

  QCoro::Task<> cloudLoop(std::stop_token stop);
  QCoro::Task<> fleetLoop(std::stop_token stop);
  [[nodiscard]] bool followsFleet() const;
  QCoro::Task<> scanFleet(std::stop_token stop);
  QCoro::Task<> energyLoop(std::stop_token stop);
  QCoro::Task<> usageLoop(std::stop_token stop);
  void publish(std::vector<DetectedAgent> agents);
  void reportUsage();
  void drainEnergy();

  void handleHookSignals(const QList<QJsonObject> &signals);
  void handleApproval(const QJsonObject &request);
  void handleReaction(const LocalBrain::Reaction &reaction, const QJsonObject &agentSignal);
  /// Passes a line through the gate, then notifies and speaks as it decides.
  void propose(const QString &line, int priority, bool notify, const QString &title);
  QCoro::Task<> reportInteraction(QString type);

  void dropOldNews();

  [[nodiscard]] AgentConnector *connector(const QString &agentId) const;
  void publishHookFlag(const QString &agentId, bool connected);
  [[nodiscard]] const LinePack *linePackOrNull() const {
    return m_linePack ? &*m_linePack : nullptr;
  }

  Parts m_parts;
  std::stop_source m_stop;

  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, QString, m_mood, QStringLiteral("…"),
                                       &PetStore::moodChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, Needs, m_needs, &PetStore::needsChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, Quota, m_quota, &PetStore::quotaChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_connected, false,
                                       &PetStore::connectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, QString, m_reply, &PetStore::replyChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_thinking, false,
                                       &PetStore::thinkingChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, ChatHealth, m_chatHealth, ChatHealth::checking,
                                       &PetStore::chatHealthChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::vector<ChatMessage>, m_messages,
                             &PetStore::messagesChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, QStringList, m_sources, &PetStore::sourcesChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::vector<DetectedAgent>, m_detected,
                             &PetStore::detectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_claudeConnected, false,
                                       &PetStore::claudeConnectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_codexConnected, false,
                                       &PetStore::codexConnectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_geminiConnected, false,
                                       &PetStore::geminiConnectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_cursorConnected, false,
                                       &PetStore::cursorConnectedChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, MorvoPersona, m_persona, &PetStore::personaChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::vector<FleetSession>, m_fleet, &PetStore::fleetChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::vector<SourceLoad>, m_sourceLoads,
                             &PetStore::sourceLoadsChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::vector<AttentionItem>, m_attentionItems,
                             &PetStore::attentionItemsChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, QString, m_attentionHeadline,
                                       QStringLiteral("都安静 · 没有要你拍板的事"),
                                       &PetStore::attentionHeadlineChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, QString, m_attentionExplain,
                                       QStringLiteral("一切平静。"),
                                       &PetStore::attentionExplainChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, GrowthState, m_growth, &PetStore::growthChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, double, m_petScale, &PetStore::petScaleChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, double, m_petOpacity, &PetStore::petOpacityChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::optional<PermRequest>, m_pendingApproval,
                             &PetStore::pendingApprovalChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, VoiceProfile, m_voiceProfile, &PetStore::voiceProfileChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, VoiceHealth, m_voiceHealth, voice_health::Idle{},
                                       &PetStore::voiceHealthChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, PetProfile, m_profile, &PetStore::profileChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_cloning, false, &PetStore::cloningChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::optional<QString>, m_genProgress,
                             &PetStore::genProgressChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, double, m_genFraction, 0,
                                       &PetStore::genFractionChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::optional<QString>, m_genError,
                             &PetStore::genErrorChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, bool, m_productAccessGranted, false,
                                       &PetStore::productAccessGrantedChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, QString, m_chatAccessLabel, QStringLiteral("—"),
                                       &PetStore::chatAccessLabelChanged)
  Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PetStore, QString, m_imageAccessLabel, QStringLiteral("—"),
                                       &PetStore::imageAccessLabelChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, std::optional<QString>, m_accessApplyMessage,
                             &PetStore::accessApplyMessageChanged)
  Q_OBJECT_BINDABLE_PROPERTY(PetStore, UsageStats, m_usage, &PetStore::usageChanged)

  std::optional<RecentDone> m_recentDone;
  std::optional<SoftConfirm> m_softConfirm;
  std::optional<LinePack> m_linePack;
  ProactiveGate m_gate;
  PetCare m_care;
  Scheduler::Timer m_bubbleClear;
  Scheduler::Timer m_showPet;
  Scheduler::Timer m_demoTap;
  std::optional<Instant> m_lastPetTap; ///< None: long ago.
  bool m_bootstrapped = false;
  bool m_scansFleet = false;
};

} // namespace morvo
