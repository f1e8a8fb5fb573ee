#include "usage/SourceRegistry.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace morvo::SourceRegistry {

const std::vector<SourceAdapter> &all() {
  using enum SourceEventCapability;
  static const std::vector<SourceAdapter> table{
      {QStringLiteral("claude"), QStringLiteral("Claude Code"), QStringLiteral(".claude/projects"),
       hooks, true},
      {QStringLiteral("codex"), QStringLiteral("Codex"), QStringLiteral(".codex/sessions"), hooks,
       true},
      {QStringLiteral("gemini"), QStringLiteral("Gemini CLI"), QStringLiteral(".gemini"), hooks,
       true},
      {QStringLiteral("qwen"), QStringLiteral("Qwen Code"), QStringLiteral(".qwen"), heuristic,
       true},
      {QStringLiteral("iflow"), QStringLiteral("iFlow"), QStringLiteral(".iflow"), heuristic, true},
      {QStringLiteral("opencode"), QStringLiteral("OpenCode"),
       QStringLiteral(".local/share/opencode"), heuristic, true},
      {QStringLiteral("cursor"), QStringLiteral("Cursor"), QStringLiteral(".cursor"), hooks, true},
      {QStringLiteral("copilot"), QStringLiteral("GitHub Copilot"), QStringLiteral(".copilot"),
       none, false}};
  return table;
}

const QSet<QString> &primaryIDs() {
  static const QSet<QString> ids{QStringLiteral("claude"), QStringLiteral("codex")};
  return ids;
}

std::vector<SourceAdapter> primary() {
  std::vector<SourceAdapter> found;
  std::ranges::copy_if(all(), std::back_inserter(found), [](const SourceAdapter &candidate) {
    return primaryIDs().contains(candidate.id);
  });
  return found;
}

std::optional<SourceAdapter> adapter(const QString &id) {
  const auto found = std::ranges::find(all(), id, &SourceAdapter::id);
  return found == all().end() ? std::nullopt : std::optional(*found);
}

std::vector<SourceAdapter> detected(const HomeFolder &home) {
  auto found = primary();
  std::erase_if(found, [&home](const SourceAdapter &candidate) {
    return !QFileInfo::exists(home.file(candidate.probeRelative));
  });
  return found;
}

} // namespace morvo::SourceRegistry
