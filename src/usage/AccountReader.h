#pragma once

#include "base/FileLayer.h"
#include "platform/HomeFolder.h"
#include "usage/AgentAccount.h"

#include <optional>

/// Who is logged in to each agent, read from the agents' own files. Anything unexpected in them
/// means nobody is known to be. Thread-safe if the file layer is.
namespace morvo::AccountReader {

[[nodiscard]] std::optional<AgentAccount> claude(const HomeFolder &home, FileLayer &files);

/// Of the file, which holds tokens too, only the address and the account's number are taken.
[[nodiscard]] std::optional<AgentAccount> codex(const HomeFolder &home, FileLayer &files);

} // namespace morvo::AccountReader
