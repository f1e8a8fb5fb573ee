#include "app/StoreFixture.h"

#include "base/AtomicFile.h"

namespace morvo::test {

StoreFixture::StoreFixture() {
  for (const char16_t *id : {u"claude", u"codex", u"gemini", u"cursor"}) {
    auto connector = std::make_unique<FakeConnector>(QString::fromUtf16(id));
    m_connectors.append(connector.get());
    m_ownedConnectors.push_back(std::move(connector));
  }
}

void StoreFixture::start() {
  const HomeFolder home{m_folder.path()};
  const Setting setting(m_settings, Environment(m_environment));
  m_notifier = std::make_unique<Notifier>(setting, m_notifications);
  m_store = std::make_unique<PetStore>(PetStore::Parts{
      .clock = m_clock,
      .scheduler = m_scheduler,
      .random = m_random,
      .setting = setting,
      .files = {.home = home, .resources = m_folder.filePath(QStringLiteral("resources"))},
      .hooks = {.home = home, .environment = Environment(m_environment), .files = &m_layer},
      .secrets = m_secrets,
      .notifier = *m_notifier,
      .body = m_body,
      .connectors = std::move(m_ownedConnectors),
      .inbox = std::move(m_ownedInbox),
      .cloud = std::move(m_ownedCloud),
      .speech = &m_speech,
      .fleet = std::move(m_ownedFleet),
      .usage = std::move(m_ownedUsage),
      .measure = m_measure,
      .learnedPct = m_learnedPct});
  m_scheduler.runDue();
}

void StoreFixture::send(const QList<QJsonObject> &signals) { m_inbox.send(signals); }

void StoreFixture::sendAgent(const QString &status, const std::optional<QString> &label,
                             const QString &provider) {
  QJsonObject signal{{QStringLiteral("kind"), QStringLiteral("agent")},
                     {QStringLiteral("provider"), provider},
                     {QStringLiteral("status"), status}};
  if (label) {
    signal.insert(QStringLiteral("label"), *label);
  }
  send({signal});
}

void StoreFixture::sendPermission(const QString &id, const QString &tool, const QString &summary) {
  send({QJsonObject{{QStringLiteral("kind"), QStringLiteral("perm")},
                    {QStringLiteral("id"), id},
                    {QStringLiteral("tool"), tool},
                    {QStringLiteral("summary"), summary}}});
}

void StoreFixture::putPetFile(const QString &name, const QByteArray &content) {
  const QString path = m_folder.filePath(QStringLiteral(".morvo/pets/morvo/") + name);
  ASSERT_TRUE(AtomicFile::write(m_layer, path, content).has_value());
}

} // namespace morvo::test
