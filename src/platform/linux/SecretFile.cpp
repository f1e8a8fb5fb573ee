#include "platform/linux/SecretFile.h"

#include "base/AtomicFile.h"
#include "base/Json.h"

#include <QJsonObject>

#include <cerrno>
#include <utility>

namespace morvo {

SecretFile::SecretFile(FileLayer &files, QString path) : m_files(&files), m_path(std::move(path)) {}

FileLayer::Result<SecretFile::Entries> SecretFile::read() const {
  const std::scoped_lock lock(m_mutex);
  return parse();
}

FileLayer::Result<void> SecretFile::put(const Entries &entries) {
  const std::scoped_lock lock(m_mutex);
  auto all = parse();
  if (!all) {
    return std::unexpected(all.error());
  }
  const Entries before = *all;
  for (const auto &[key, value] : entries) {
    all->insert_or_assign(key, value);
  }
  return *all == before ? FileLayer::Result<void>() : write(*all);
}

FileLayer::Result<void> SecretFile::erase(const SecretKey &key) {
  const std::scoped_lock lock(m_mutex);
  auto all = parse();
  if (!all) {
    return std::unexpected(all.error());
  }
  if (all->erase(key) == 0) {
    return {};
  }
  return all->empty() ? m_files->remove(m_path) : write(*all);
}

FileLayer::Result<SecretFile::Entries> SecretFile::parse() const {
  const auto content = m_files->read(m_path);
  if (!content && content.error().code == ENOENT) {
    return Entries();
  }
  if (!content) {
    return std::unexpected(content.error());
  }
  Entries entries;
  const QJsonObject services = Json::parseObject(*content).value_or(QJsonObject());
  for (auto service = services.begin(); service != services.end(); ++service) {
    const QJsonObject accounts = service.value().toObject();
    for (auto account = accounts.begin(); account != accounts.end(); ++account) {
      const SecretKey key{service.key(), account.key()};
      if (account.value().isString()) {
        entries.emplace(key, account.value().toString());
      } else if (account.value().isNull()) {
        entries.emplace(key, std::nullopt);
      }
    }
  }
  return entries;
}

FileLayer::Result<void> SecretFile::write(const Entries &entries) {
  constexpr AtomicFile::Options forOwnerOnly{
      .mode = 0600, .forceMode = true, .directoryMode = 0700};
  QJsonObject services;
  for (const auto &[key, value] : entries) {
    QJsonObject accounts = services.value(key.service).toObject();
    accounts.insert(key.account, value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null));
    services.insert(key.service, accounts);
  }
  return AtomicFile::write(*m_files, m_path, Json::pretty(services), forOwnerOnly);
}

} // namespace morvo
