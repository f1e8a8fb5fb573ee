#pragma once

#include "base/FileLayer.h"
#include "platform/HomeFolder.h"
#include "usage/AgentAccount.h"
#include "usage/FileIdentity.h"
#include "usage/JsonExcerpt.h"

#include <QJsonObject>

#include <mutex>
#include <optional>

namespace morvo {

/// Tells who is logged in to each agent, from the agents' own files. Anything unexpected in them
/// means nobody is known to be. It remembers the answers: a file that has not changed is not read
/// again. Thread-safe if the file layer is. Reads files, so not for the main thread.
class AccountReader {
public:
  /// `files` must outlive the reader.
  AccountReader(HomeFolder home, FileLayer &files);

  /// Of the file, which may hold the histories of many projects, only what tells the account is
  /// kept and taken apart.
  [[nodiscard]] std::optional<AgentAccount> claude();

  /// Of the file, which holds tokens too, only the address and the account's number are taken.
  [[nodiscard]] std::optional<AgentAccount> codex();

private:
  struct Known {
    FileIdentity identity;
    std::optional<AgentAccount> account;
  };
  using Parse = std::optional<AgentAccount>(const QJsonObject &file);

  /// What `parse` makes of the members that `excerpt` keeps.
  [[nodiscard]] std::optional<AgentAccount> account(const QString &path, JsonExcerpt excerpt,
                                                    Parse *parse, Known &known);

  HomeFolder m_home;
  FileLayer *m_files;
  std::mutex m_mutex;
  Known m_claude;
  Known m_codex;
};

} // namespace morvo
