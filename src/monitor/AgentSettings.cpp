#include "monitor/AgentSettings.h"

#include "base/AtomicFile.h"
#include "monitor/JsonComments.h"
#include "monitor/SettingsSeal.h"
#include "monitor/SharedFile.h"

#include <algorithm>
#include <utility>

namespace morvo::AgentSettings {
namespace {

constexpr int indentation = 2;
constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

/// How deep brackets nest outside strings.
int nesting(QByteArrayView text) {
  int depth = 0;
  int deepest = 0;
  bool inString = false;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (inString) {
      at += c == '\\' ? 1 : 0;
      inString = c != '"';
    } else if (c == '"') {
      inString = true;
    } else if (c == '{' || c == '[') {
      deepest = std::max(deepest, ++depth);
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return deepest;
}

/// The parsed text; a discarded value when it is not JSON. Never throws.
nlohmann::json parsedSealed(const QByteArray &text) {
  const QByteArray sealed = SettingsSeal::sealed(text);
  return nlohmann::json::parse(sealed.begin(), sealed.end(), nullptr, /*allow_exceptions=*/false);
}

} // namespace

std::expected<Document, HookError> parse(const QByteArray &text, const QString &path) {
  const QByteArray unmarked =
      text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text;
  const QByteArray body = JsonComments::blanked(unmarked);
  if (nesting(body) > deepestNesting) {
    return std::unexpected(HookError{HookError::Kind::fileTooDeep, path, {}});
  }
  auto value = parsedSealed(body);
  if (value.is_object()) {
    return Document{.object = std::move(value),
                    .replacesForeignContent = false,
                    .losesComments = body != unmarked};
  }
  if (value.is_discarded() && parsedSealed(QString::fromUtf8(body).toUtf8()).is_object()) {
    return std::unexpected(HookError{HookError::Kind::fileNotUtf8, path, {}});
  }
  return Document{.object = nlohmann::json::object(),
                  .replacesForeignContent = !unmarked.trimmed().isEmpty(),
                  .losesComments = false};
}

std::expected<Document, HookError> read(FileLayer &files, const QString &path) {
  const auto content = AtomicFile::present(files, path);
  if (!content) {
    return std::unexpected(HookError{HookError::Kind::fileUnreadable, path, content.error()});
  }
  return parse(content->value_or(QByteArray()), path);
}

QByteArray text(const nlohmann::json &object) {
  // All texts come from valid UTF-8 or from QString, so the handler has nothing to replace; it only
  // keeps the library from throwing.
  const auto dumped = object.dump(indentation, ' ', /*ensure_ascii=*/false,
                                  nlohmann::json::error_handler_t::replace);
  return SettingsSeal::opened(QByteArray::fromStdString(dumped)) + '\n';
}

std::expected<void, HookError>
change(FileLayer &files, const QString &path,
       const std::function<nlohmann::json(nlohmann::json)> &changed) {
  using Content = std::expected<QByteArray, HookError>;
  return SharedFile::change(files, path, [&](const QByteArray &old) -> Content {
    auto document = parse(old, path);
    if (!document) {
      return std::unexpected(document.error());
    }
    return text(changed(std::move(document->object)));
  });
}

} // namespace morvo::AgentSettings
