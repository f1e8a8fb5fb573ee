#pragma once

#include "base/FileLayer.h"
#include "monitor/HookError.h"

#include <functional>
#include <nlohmann/json.hpp>

/// JSON files that belong to an agent, read and written so that every value the user or the agent
/// put there survives; order, formatting and comments do not.
///
/// The values are made for adding and removing entries. Numbers that 64-bit integers do not hold
/// and single surrogates stand in them in sealed form (`monitor/SettingsSeal.h`): to look at such
/// a value, write it.
namespace morvo::AgentSettings {

struct Document {
  /// Always an object.
  nlohmann::json object = nlohmann::json::object();
  /// The file exists but holds no JSON object: writing replaces it.
  bool replacesForeignContent = false;
  /// The file holds comments: writing takes them out.
  bool losesComments = false;
};

/// Deeper nesting is refused, since writing recurses.
inline constexpr int deepestNesting = 512;

/// What `text` holds, comments (`monitor/JsonComments.h`) aside; an empty object when it is not
/// JSON or no object. A byte order mark is taken off. Fails for nesting beyond `deepestNesting`,
/// and for text that only bytes that are not UTF-8 keep from being an object; `path` is named in
/// the error.
[[nodiscard]] std::expected<Document, HookError> parse(const QByteArray &text, const QString &path);

/// The file's content as `parse` reads it; an empty object when there is no file. A file that
/// cannot be read is a failure, not an empty object: writing would lose its content.
[[nodiscard]] std::expected<Document, HookError> read(FileLayer &files, const QString &path);

/// Pretty-printed with sorted keys, with a line feed at the end.
[[nodiscard]] QByteArray text(const nlohmann::json &object);

/// Reads the object, lets `changed` make another of it and writes that, atomically, creating the
/// folders it needs. An existing file keeps its mode, a symbolic link stays one. A file that
/// someone changed meanwhile is read and changed anew, some times at most, so that no one's change
/// is lost: `changed` may be called several times.
[[nodiscard]] std::expected<void, HookError>
change(FileLayer &files, const QString &path,
       const std::function<nlohmann::json(nlohmann::json)> &changed);

} // namespace morvo::AgentSettings
