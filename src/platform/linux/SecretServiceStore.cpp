#include "platform/linux/SecretServiceStore.h"

#include "base/Diagnostics.h"

#include <mutex>
#include <utility>

namespace morvo {
namespace {

constexpr QStringView diagnosticsTag = u"SECRET";

} // namespace

class SecretServiceStore::Mailbox {
public:
  /// Runs `work` on the thread that made the mailbox, unless it is closed before.
  void send(std::function<void()> work) {
    const std::scoped_lock lock(m_mutex);
    if (m_receiver) {
      QMetaObject::invokeMethod(m_receiver.get(), std::move(work), Qt::QueuedConnection);
    }
  }
  void close() {
    const std::scoped_lock lock(m_mutex);
    m_receiver.reset();
  }

private:
  std::mutex m_mutex;
  std::unique_ptr<QObject> m_receiver = std::make_unique<QObject>();
};

SecretServiceStore::SecretServiceStore(std::shared_ptr<SecretVault> vault, FileLayer &files,
                                       const QString &path, Scheduler &scheduler,
                                       Deadlines deadlines)
    : m_mailbox(std::make_shared<Mailbox>()), m_vault(std::move(vault)),
      m_file(std::make_shared<SecretFile>(files, path)), m_scheduler(&scheduler),
      m_saveDeadline(deadlines.save) {
  startLoading(deadlines.load);
}

SecretServiceStore::~SecretServiceStore() {
  m_mailbox->close();
  m_fileThread.drain();
  SecretFile::Entries left;
  for (const auto &[key, unconfirmed] : m_unconfirmed) {
    left.emplace(key, unconfirmed.value);
  }
  if (left.empty()) {
    return;
  }
  warnOnce();
  if (const auto written = m_file->put(left); !written) {
    report(written.error());
  }
}

std::optional<QString> SecretServiceStore::read(const QString &service,
                                                const QString &account) const {
  const SecretKey key{service, account};
  if (const auto own = m_own.find(key); own != m_own.end()) {
    return own->second;
  }
  if (const auto inFile = m_inFile.find(key); inFile != m_inFile.end()) {
    return inFile->second;
  }
  const auto inVault = m_inVault.find(key);
  return inVault == m_inVault.end() ? std::nullopt : std::optional(inVault->second);
}

void SecretServiceStore::save(const QString &value, const QString &service,
                              const QString &account) {
  if (const QString trimmed = value.trimmed(); !trimmed.isEmpty()) {
    change({service, account}, trimmed);
  }
}

void SecretServiceStore::remove(const QString &service, const QString &account) {
  change({service, account}, std::nullopt);
}

void SecretServiceStore::onLoaded(std::function<void()> handler) {
  m_handlers.push_back(handler);
  if (m_isLoaded) {
    m_mailbox->send(std::move(handler));
  }
}

void SecretServiceStore::startLoading(Duration deadline) {
  m_loadDeadline = m_scheduler->after(deadline, [this] {
    m_isVaultSettled = true;
    warnOnce();
    becomeLoaded();
  });
  m_fileThread.post([this, file = m_file, mailbox = m_mailbox] {
    mailbox->send([this, entries = file->read()] { fileLoaded(entries); });
  });
  m_vaultThread.post([this, vault = m_vault, mailbox = m_mailbox] {
    mailbox->send([this, answer = vault->load()] { vaultLoaded(answer); });
  });
}

void SecretServiceStore::fileLoaded(const FileLayer::Result<SecretFile::Entries> &entries) {
  if (entries) {
    m_inFile = *entries;
  } else {
    report(entries.error());
  }
  m_isFileLoaded = true;
  becomeLoaded();
}

void SecretServiceStore::vaultLoaded(const VaultAnswer &answer) {
  m_loadDeadline.cancel();
  m_isVaultSettled = true;
  if (answer) {
    m_isVaultLoaded = true;
    m_inVault = *answer;
  } else {
    warnOnce();
  }
  becomeLoaded();
}

void SecretServiceStore::becomeLoaded() {
  if (!m_isFileLoaded || !m_isVaultSettled) {
    return;
  }
  const bool brings = !m_isLoaded || m_isVaultLoaded;
  m_isLoaded = true;
  moveFileIntoVault();
  if (!brings) {
    return;
  }
  // A handler may add another one.
  const auto handlers = m_handlers;
  for (const auto &handler : handlers) {
    handler();
  }
}

void SecretServiceStore::moveFileIntoVault() {
  if (!m_isVaultLoaded) {
    return;
  }
  for (const auto &[key, value] : m_inFile) {
    if (!m_own.contains(key)) {
      submit(key, value);
    }
  }
}

void SecretServiceStore::change(const SecretKey &key, const Value &value) {
  m_own.insert_or_assign(key, value);
  submit(key, value);
}

void SecretServiceStore::submit(const SecretKey &key, const Value &value) {
  const std::uint64_t number = ++m_lastNumber;
  auto deadline =
      std::make_shared<Scheduler::Timer>(m_scheduler->after(m_saveDeadline, [this, key, value] {
        // The service may still take it: then the file's entry goes again.
        keepInFile(key, value);
      }));
  m_unconfirmed.insert_or_assign(
      key, Unconfirmed{.value = value, .number = number, .deadline = std::move(deadline)});
  m_vaultThread.post([this, key, value, number, vault = m_vault, mailbox = m_mailbox] {
    const bool stored = (value ? vault->store(key, *value) : vault->erase(key)).has_value();
    mailbox->send([this, key, number, stored] { answered(key, number, stored); });
  });
}

void SecretServiceStore::answered(const SecretKey &key, std::uint64_t number, bool stored) {
  const auto found = m_unconfirmed.find(key);
  if (found == m_unconfirmed.end() || found->second.number != number) {
    // A newer value is on its way.
    return;
  }
  const Value value = found->second.value;
  m_unconfirmed.erase(found);
  if (!stored) {
    keepInFile(key, value);
    return;
  }
  m_inFile.erase(key);
  m_own.insert_or_assign(key, value);
  m_fileThread.post([this, key, file = m_file, mailbox = m_mailbox] {
    if (const auto erased = file->erase(key); !erased) {
      mailbox->send([this, error = erased.error()] { report(error); });
    }
  });
}

void SecretServiceStore::keepInFile(const SecretKey &key, const Value &value) {
  warnOnce();
  m_inFile.insert_or_assign(key, value);
  m_fileThread.post([this, key, value, file = m_file, mailbox = m_mailbox] {
    if (const auto written = file->put({{key, value}}); !written) {
      mailbox->send([this, error = written.error()] { report(error); });
    }
  });
}

void SecretServiceStore::warnOnce() {
  if (!std::exchange(m_hasWarned, true)) {
    Diagnostics::line(diagnosticsTag,
                      QStringLiteral("no secret service took the secrets; what it does not take is "
                                     "kept, readable for you alone, in ") +
                          m_file->path());
  }
}

void SecretServiceStore::report(const FileError &error) const {
  Diagnostics::line(diagnosticsTag, error.message());
}

} // namespace morvo
