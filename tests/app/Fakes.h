#pragma once

#include "base/Scheduler.h"
#include "cloud/PetCloud.h"
#include "monitor/AgentConnector.h"
#include "monitor/FleetSource.h"
#include "monitor/SignalSource.h"
#include "pet/PetBody.h"
#include "platform/NotificationService.h"
#include "usage/UsageSource.h"
#include "voice/Speech.h"

#include <utility>

namespace morvo::test {

/// A pet that writes down what it is told. It can play the frame sets of its catalogue.
class FakeBody final : public PetBody {
public:
  bool react(const QString &kind) override {
    reactions.append(kind);
    return playable.contains(kind);
  }
  void setMood(const QString &mood) override { moods.append(mood); }
  void setPersona(const QString &personaId) override { personas.append(personaId); }
  void emitHearts() override { ++hearts; }
  void setVisible(bool visible) override { visibility.append(visible); }
  void setQuietMode(bool quiet) override { quietMode = quiet; }
  void setBubble(const QString &text) override { bubbles.append(text); }
  void setScale(double value) override { scale = value; }
  void setOpacity(double value) override { opacity = value; }
  [[nodiscard]] std::vector<PetMenuAction> catalogActions() const override { return catalog; }

  /// Adds an action with frames.
  void own(const QString &frameSet, const QString &label = {}) {
    catalog.push_back({.id = frameSet,
                       .frameSet = frameSet,
                       .label = label.isEmpty() ? frameSet : label,
                       .hasFrames = true,
                       .isLoop = false});
    playable.append(frameSet);
  }

  QStringList playable;
  std::vector<PetMenuAction> catalog;
  QStringList reactions;
  QStringList moods;
  QStringList personas;
  QStringList bubbles;
  QList<bool> visibility;
  int hearts = 0;
  bool quietMode = false;
  double scale = 0;
  double opacity = 0;
};

class FakeNotifications final : public NotificationService {
public:
  [[nodiscard]] bool isAvailable() const override { return true; }
  void show(const QString &title, const QString &body, std::function<void()> /*failed*/) override {
    shown.append({title, body});
  }
  void onActivated(std::function<void()> handler) override { activated = std::move(handler); }

  QList<std::pair<QString, QString>> shown;
  std::function<void()> activated;
};

/// Lets a second pass on the scheduler, if there is one.
inline QCoro::Task<> pause(Scheduler *scheduler) {
  if (scheduler != nullptr) {
    co_await scheduler->sleep(std::chrono::seconds(1));
  }
}

class FakeCloud final : public PetCloud {
public:
  [[nodiscard]] bool hasSession() const override { return session; }
  void setAccessToken(const std::optional<QString> &token) override { accessToken = token; }
  [[nodiscard]] QCoro::Task<std::optional<Quota>> sync() override {
    ++syncs;
    const auto given = answer;
    co_await pause(gate);
    co_return given;
  }
  [[nodiscard]] QCoro::Task<std::optional<Quota>> interact(QString type) override {
    interactions.append(type);
    const auto given = answer;
    co_await pause(gate);
    co_return given;
  }
  void postSignals(const QList<QJsonObject> &signals) override { posted.append(signals); }

  bool session = false;
  std::optional<Quota> answer;
  /// Answers take a second of this scheduler's time; without one they come at once.
  Scheduler *gate = nullptr;
  std::optional<QString> accessToken;
  int syncs = 0;
  QStringList interactions;
  QList<QList<QJsonObject>> posted;
};

class FakeSpeech final : public Speech {
public:
  void speak(const QString &text, const VoiceProfile &profile,
             std::function<void(VoiceHealth)> onStatus) override {
    spoken.append(text);
    lastProfile = profile;
    status = std::move(onStatus);
  }

  QStringList spoken;
  VoiceProfile lastProfile;
  std::function<void(VoiceHealth)> status;
};

class FakeFleet final : public FleetSource {
public:
  [[nodiscard]] QCoro::Task<std::vector<FleetSession>> scan() override {
    ++scans;
    const auto result = sessions;
    co_await pause(gate);
    co_return result;
  }

  std::vector<FleetSession> sessions;
  int scans = 0;
  Scheduler *gate = nullptr;
};

class FakeUsage final : public UsageSource {
public:
  [[nodiscard]] QCoro::Task<std::optional<UsageSnapshot>> capture() override {
    ++captures;
    const auto captured = result;
    co_await pause(gate);
    co_return captured;
  }
  [[nodiscard]] QCoro::Task<std::optional<std::vector<DetectedAgent>>> present() override {
    ++looks;
    const auto there = agentsThere;
    co_await pause(gate);
    co_return there;
  }

  std::optional<UsageSnapshot> result{std::in_place};
  std::optional<std::vector<DetectedAgent>> agentsThere{std::in_place};
  int captures = 0;
  int looks = 0;
  Scheduler *gate = nullptr;
};

/// Signals that the test sends.
class FakeInbox final : public SignalSource {
public:
  void start(Receiver receiver) override { send = std::move(receiver); }

  Receiver send;
};

class FakeConnector final : public AgentConnector {
public:
  explicit FakeConnector(QString id) : m_id(std::move(id)) {}

  [[nodiscard]] QString id() const override { return m_id; }
  [[nodiscard]] QString name() const override { return m_id; }
  [[nodiscard]] QString file() const override { return m_id; }
  [[nodiscard]] QString command() const override { return m_id; }
  [[nodiscard]] std::expected<void, HookError> connect() override { return change(true); }
  [[nodiscard]] std::expected<void, HookError> disconnect() override { return change(false); }
  [[nodiscard]] bool isConnected() const override { return connected; }
  [[nodiscard]] QStringList obstacles() const override { return {}; }

  bool connected = false;
  bool fails = false;

private:
  std::expected<void, HookError> change(bool on) {
    if (fails) {
      return std::unexpected(HookError{});
    }
    connected = on;
    return {};
  }

  QString m_id;
};

} // namespace morvo::test
