#pragma once

#include <QString>
#include <QStringList>

#include <nlohmann/json.hpp>
#include <vector>

/// Adding our hooks to an agent's settings and taking them out again. The settings' key `hooks`
/// holds an object from event name to array of entries. An entry is a group with an array `hooks`
/// of commands (Claude Code, Codex, Gemini CLI) or a command itself (the flat form: Cursor). An
/// entry is ours when its `command` is exactly our command. Everything that is not ours survives,
/// except that adding replaces a value of another type than told.
namespace morvo::ClaudeStyleHookMerger {

/// What is added to one event's array.
struct Entry {
  QString event;
  nlohmann::json value;
};

/// {"type": "command", "command": command}, as it stands in a group.
[[nodiscard]] nlohmann::json commandHook(const QString &command);
/// {"hooks": [hook]}.
[[nodiscard]] nlohmann::json group(const nlohmann::json &hook);

/// Adds each entry to its event unless that event already holds the command.
[[nodiscard]] nlohmann::json withEntriesAdded(nlohmann::json settings,
                                              const std::vector<Entry> &entries,
                                              const QString &command);

/// The same with a plain group for each event.
[[nodiscard]] nlohmann::json withAdded(nlohmann::json settings, const QStringList &events,
                                       const QString &command);

/// Takes the command out of the events. A group that this leaves without hooks goes, an event that
/// it leaves without groups goes, and so does `hooks` when it ends empty of that. What was empty or
/// of another type before is not ours and stays.
[[nodiscard]] nlohmann::json withRemoved(nlohmann::json settings, const QStringList &events,
                                         const QString &command);

/// Whether any of these events holds the command.
[[nodiscard]] bool isConnected(const nlohmann::json &settings, const QStringList &stopKeys,
                               const QString &command);

/// Whether the array of entries holds the command, in a group or flat.
[[nodiscard]] bool groupsContain(const nlohmann::json &groups, const QString &command);

} // namespace morvo::ClaudeStyleHookMerger
