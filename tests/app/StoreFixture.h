#pragma once

#include "app/Fakes.h"
#include "app/PetStore.h"
#include "base/SystemFileLayer.h"
#include "support/ManualScheduler.h"
#include "support/MemorySecrets.h"
#include "support/MemorySettings.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo::test {

/// A store on fakes, in a temporary home. Change the fakes and settings first, then `start`.
class StoreFixture : public testing::Test {
protected:
  StoreFixture();

  /// Makes the store and lets everything run that needs no time.
  void start();
  /// Delivers one batch, as the inbox does.
  void send(const QList<QJsonObject> &signals);
  void sendAgent(const QString &status, const std::optional<QString> &label = std::nullopt,
                 const QString &provider = QStringLiteral("claude"));
  void sendPermission(const QString &id, const QString &tool, const QString &summary);
  void advance(Duration by) { m_scheduler.advance(by); }
  void set(const QString &key, const QVariant &value) { m_settings.set(key, value); }
  /// Writes a file of the persona "morvo" in the user's folder.
  void putPetFile(const QString &name, const QByteArray &content);
  [[nodiscard]] FakeConnector &connector(qsizetype index) { return *m_connectors.at(index); }

  QTemporaryDir m_folder;
  SystemFileLayer m_layer;
  ManualClock m_clock;
  ManualScheduler m_scheduler{m_clock};
  SeededRandomSource m_random{7};
  MemorySettings m_settings;
  QHash<QString, QString> m_environment;
  MemorySecrets m_secrets;
  FakeNotifications m_notifications;
  FakeBody m_body;
  FakeSpeech m_speech;
  // Owned by the store once it has started.
  std::unique_ptr<FakeCloud> m_ownedCloud = std::make_unique<FakeCloud>();
  std::unique_ptr<FakeFleet> m_ownedFleet = std::make_unique<FakeFleet>();
  std::unique_ptr<FakeUsage> m_ownedUsage = std::make_unique<FakeUsage>();
  std::unique_ptr<FakeInbox> m_ownedInbox = std::make_unique<FakeInbox>();
  FakeCloud &m_cloud = *m_ownedCloud;
  FakeFleet &m_fleet = *m_ownedFleet;
  FakeUsage &m_usage = *m_ownedUsage;
  FakeInbox &m_inbox = *m_ownedInbox;
  /// Makes the figures of what is captured; by itself, the window is the week.
  std::function<UsageStats(const UsageSnapshot &)> m_measure = [](const UsageSnapshot &snapshot) {
    return UsageStats{.windowTokens = snapshot.weekTokens};
  };
  AttentionEngine::LearnedPct m_learnedPct = [](std::int64_t) { return 50; };
  std::vector<std::unique_ptr<AgentConnector>> m_ownedConnectors;
  QList<FakeConnector *> m_connectors;
  std::unique_ptr<Notifier> m_notifier;
  std::unique_ptr<PetStore> m_store;
};

} // namespace morvo::test
