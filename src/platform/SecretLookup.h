#pragma once

#include "base/Environment.h"
#include "base/FileLayer.h"
#include "platform/HomeFolder.h"
#include "platform/SecretStore.h"

#include <QStringList>

namespace morvo {

/// Finds a service key: in the secret store, then in the environment, then in the developer's key
/// file; the first that is not empty wins. Looks anew at each call. Main thread.
class SecretLookup {
public:
  struct Places {
    QString service;
    QString account;
    /// Names in the environment and in the key file, in the order they are tried.
    QStringList variables;
    /// The key file's name in `~/.morvo`.
    QString keyFile;
  };

  /// `secrets` and `files` must outlive the lookup.
  SecretLookup(const SecretStore &secrets, Environment environment, HomeFolder home,
               FileLayer &files);

  [[nodiscard]] std::optional<QString> find(const Places &places) const;

  /// Where the key of DashScope is looked for.
  [[nodiscard]] static Places dashScope();
  /// Where the key of Doubao's speech service is looked for.
  [[nodiscard]] static Places doubaoSpeech();

private:
  [[nodiscard]] std::optional<QString> inEnvironment(const Places &places) const;
  [[nodiscard]] std::optional<QString> inKeyFile(const Places &places) const;

  const SecretStore *m_secrets;
  Environment m_environment;
  HomeFolder m_home;
  FileLayer *m_files;
};

} // namespace morvo
