#include "monitor/AgentSettings.h"
#include "monitor/ClaudeStyleHookMerger.h"
#include "monitor/SettingsSeal.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace morvo;

const QStringList events = {QStringLiteral("Stop"), QStringLiteral("stop")};
const QString command = QStringLiteral("/h/.morvo/hook.sh claude");

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// What is written can be read again and is written the same.
void checkRoundTrip(const nlohmann::json &object) {
  const QByteArray text = AgentSettings::text(object);
  const auto again = AgentSettings::parse(text, QString());
  require(again.has_value() && again->object == object);
  require(AgentSettings::text(again->object) == text);
}

/// Discarded when the library finds no JSON. Nor is a text with a NUL byte any, though the library,
/// for which it ends a comment, may read an object around it.
nlohmann::json parsedByLibrary(const QByteArray &text) {
  if (text.contains('\0')) {
    return {nlohmann::json::value_t::discarded};
  }
  return nlohmann::json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false,
                               /*ignore_comments=*/true);
}

/// Where the library alone reads the text, it reads the same values from what we write.
void checkAgainstLibrary(const QByteArray &text, const nlohmann::json &object) {
  const auto plain = parsedByLibrary(text);
  if (plain.is_object()) {
    const QByteArray written = AgentSettings::text(object);
    require(nlohmann::json::parse(written.begin(), written.end(), nullptr, false) == plain);
  }
}

void checkMerge(const nlohmann::json &object) {
  const auto added = ClaudeStyleHookMerger::withAdded(object, events, command);
  require(ClaudeStyleHookMerger::isConnected(added, events, command));
  require(ClaudeStyleHookMerger::withAdded(added, events, command) == added);
  const auto removed = ClaudeStyleHookMerger::withRemoved(added, events, command);
  require(!ClaudeStyleHookMerger::isConnected(removed, events, command));
  require(ClaudeStyleHookMerger::withRemoved(removed, events, command) == removed);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  static_cast<void>(SettingsSeal::opened(text));
  const auto document = AgentSettings::parse(text, QString());
  if (document && !document->replacesForeignContent) {
    checkRoundTrip(document->object);
    checkAgainstLibrary(text, document->object);
    checkMerge(document->object);
  } else if (document) {
    // Nothing that the library takes for an object may count as foreign.
    require(!parsedByLibrary(text).is_object());
  }
  return 0;
}
