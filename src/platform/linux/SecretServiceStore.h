#pragma once

#include "base/Scheduler.h"
#include "platform/SecretStore.h"
#include "platform/linux/JobThread.h"
#include "platform/linux/SecretFile.h"
#include "platform/linux/SecretVault.h"

#include <QObject>

#include <memory>
#include <vector>

namespace morvo {

/// The user's secrets in the desktop's secret service, served from memory: they are read once, in
/// the background, at the start, and written through. The main thread never waits for the service.
///
/// What the service does not confirm in time is kept in a file instead, be there no service, a
/// hung one, or a locked keyring: nothing that was saved is lost, and the user is not asked to
/// unlock anything. The file's entries are newer than what the service holds, so they win, and
/// they move into the service as soon as it takes them: at the next start at the latest. The first
/// time the service fails, one line on standard error says where secrets are kept.
class SecretServiceStore final : public SecretStore {
public:
  struct Deadlines {
    /// From the start until secrets count as loaded, with or without the service. What a slower
    /// service says later is still taken.
    Duration load = std::chrono::seconds(3);
    /// From a save until the file takes what the service has not.
    Duration save = std::chrono::seconds(3);
  };

  /// Begins to load. `scheduler` and `files` must outlive the store, `files` also a read of it that
  /// is under way. `path` is the fallback file.
  SecretServiceStore(std::shared_ptr<SecretVault> vault, FileLayer &files, const QString &path,
                     Scheduler &scheduler, Deadlines deadlines);
  SecretServiceStore(const SecretServiceStore &) = delete;
  SecretServiceStore &operator=(const SecretServiceStore &) = delete;
  /// What is still unconfirmed goes to the file. Does not wait for the service.
  ~SecretServiceStore() override;

  [[nodiscard]] std::optional<QString> read(const QString &service,
                                            const QString &account) const override;
  void save(const QString &value, const QString &service, const QString &account) override;
  void remove(const QString &service, const QString &account) override;
  void onLoaded(std::function<void()> handler) override;

  /// Whether the service or the file has been given all that was saved.
  [[nodiscard]] bool isSettled() const { return m_unconfirmed.empty(); }

private:
  using Value = std::optional<QString>;
  using VaultAnswer = std::expected<SecretVault::Secrets, SecretVault::Failure>;
  struct Unconfirmed {
    Value value;
    std::uint64_t number = 0;
    std::shared_ptr<Scheduler::Timer> deadline;
  };

  void startLoading(Duration deadline);
  void fileLoaded(const FileLayer::Result<SecretFile::Entries> &entries);
  void vaultLoaded(const VaultAnswer &answer);
  void becomeLoaded();
  void moveFileIntoVault();
  void change(const SecretKey &key, const Value &value);
  void submit(const SecretKey &key, const Value &value);
  void answered(const SecretKey &key, std::uint64_t number, bool stored);
  void keepInFile(const SecretKey &key, const Value &value);
  void warnOnce();
  void report(const FileError &error) const;

  /// Where the threads send their results; they find it gone when the store is.
  class Mailbox;
  std::shared_ptr<Mailbox> m_mailbox;
  std::shared_ptr<SecretVault> m_vault;
  std::shared_ptr<SecretFile> m_file;
  Scheduler *m_scheduler;
  Duration m_saveDeadline;
  JobThread m_vaultThread;
  JobThread m_fileThread;

  SecretVault::Secrets m_inVault;
  SecretFile::Entries m_inFile;
  /// Saved or removed by this process: newer than both.
  SecretFile::Entries m_own;
  std::map<SecretKey, Unconfirmed> m_unconfirmed;
  std::uint64_t m_lastNumber = 0;
  Scheduler::Timer m_loadDeadline;
  bool m_isFileLoaded = false;
  /// The vault has answered, or its time is over.
  bool m_isVaultSettled = false;
  bool m_isVaultLoaded = false;
  bool m_isLoaded = false;
  bool m_hasWarned = false;
  std::vector<std::function<void()>> m_handlers;
};

} // namespace morvo
