#pragma once

#include "monitor/AgentConnector.h"

#include <QStringList>

#include <memory>
#include <span>

class QTextStream;

/// The command line for connecting agents without a window:
/// `connect <agent>`, `disconnect <agent>` and `status`, each with `--json` for programs.
namespace morvo::ConnectCommand {

inline constexpr int succeeded = 0;
inline constexpr int failed = 1;
inline constexpr int wrongUsage = 2;

/// Whether the first word is one of the commands.
[[nodiscard]] bool isMeant(const QStringList &words);

/// Runs the words that follow the program's name. Results go to `out`, failures and usage to `err`;
/// with `--json` the outcome of a known command, failures included, is one object on `out`. The
/// exit code.
[[nodiscard]] int run(const QStringList &words,
                      std::span<const std::unique_ptr<AgentConnector>> connectors, QTextStream &out,
                      QTextStream &err);

} // namespace morvo::ConnectCommand
