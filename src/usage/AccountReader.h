#pragma once

#include "base/FileLayer.h"
#include "platform/HomeFolder.h"
#include "usage/AgentAccount.h"
#include "usage/FileIdentity.h"

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
  /// taken apart.
  [[nodiscard]] std::optional<AgentAccount> claude();

  /// Of the file, which holds tokens too, only the address and the account's number are taken.
  [[nodiscard]] std::optional<AgentAccount> codex();

private:
  struct Known {
    FileIdentity identity;
    std::optional<AgentAccount> account;
  };
  /// Behind the text there is room for a parser that reads ahead.
  using Parse = std::optional<AgentAccount>(QByteArrayView text);

  [[nodiscard]] std::optional<AgentAccount> account(const QString &path, Parse *parse,
                                                    Known &known);

  HomeFolder m_home;
  FileLayer *m_files;
  std::mutex m_mutex;
  Known m_claude;
  Known m_codex;
};

} // namespace morvo
