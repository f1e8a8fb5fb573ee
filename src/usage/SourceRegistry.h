#pragma once

#include "platform/HomeFolder.h"
#include "usage/SourceAdapter.h"

#include <QSet>

#include <optional>
#include <vector>

/// The coding agents that the program knows of: which there are, and how each is recognised.
/// Thread-safe.
namespace morvo::SourceRegistry {

/// The fixed table, in the order in which agents are listed.
[[nodiscard]] const std::vector<SourceAdapter> &all();

/// The agents whose use is measured.
[[nodiscard]] const QSet<QString> &primaryIDs();

/// The entries of `all` that `primaryIDs` names, in the table's order.
[[nodiscard]] std::vector<SourceAdapter> primary();

[[nodiscard]] std::optional<SourceAdapter> adapter(const QString &id);

/// The primary entries whose file or folder exists below `home`. Reads no file.
[[nodiscard]] std::vector<SourceAdapter> detected(const HomeFolder &home);

} // namespace morvo::SourceRegistry
