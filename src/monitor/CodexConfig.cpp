#include "monitor/CodexConfig.h"

#include <QList>

#include <algorithm>
#include <optional>
#include <string_view>
#include <toml++/toml.h>

namespace morvo::CodexConfig {
namespace {

constexpr QByteArrayView sectionHead("[features]");
constexpr QByteArrayView switchKey("hooks");
constexpr QByteArrayView onValue("true");
constexpr const char *onLine = "hooks = true";
/// The same place as a TOML parser names it.
constexpr std::string_view featuresKey = "features";
constexpr std::string_view hooksKey = "hooks";

/// The line without its comment and the white space around.
QByteArray significant(const QByteArray &line) {
  const qsizetype comment = line.indexOf('#');
  return (comment < 0 ? line : line.first(comment)).trimmed();
}

bool isSectionHead(const QByteArray &significantLine) {
  return significantLine.startsWith('[') && significantLine.endsWith(']');
}

/// The value when the line sets the switch.
std::optional<QByteArray> switchValue(const QByteArray &significantLine) {
  const qsizetype equals = significantLine.indexOf('=');
  if (equals < 0 || significantLine.first(equals).trimmed() != switchKey) {
    return std::nullopt;
  }
  return significantLine.sliced(equals + 1).trimmed();
}

void appendSection(QList<QByteArray> &lines) {
  if (!lines.last().isEmpty()) {
    lines << QByteArray();
  }
  lines << sectionHead.toByteArray() << QByteArray(onLine);
}

/// Whether the parser gets along with the text's size and depth.
bool isWithinLimits(const QByteArray &text) {
  const QList<QByteArray> lines = text.split('\n');
  return text.size() <= longestText && std::ranges::all_of(lines, [](const QByteArray &line) {
           return line.count('.') <= mostDotsInLine;
         });
}

/// The parsed text; nothing when it is no TOML or beyond the limits.
std::optional<toml::table> parsed(const QByteArray &text) {
  if (!isWithinLimits(text)) {
    return std::nullopt;
  }
  try {
    return toml::parse(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
  } catch (const toml::parse_error &) {
    return std::nullopt;
  }
}

/// Turns the switch on in the values; false when `features` is something that has none.
bool turnOn(toml::table &config) {
  if (!config.contains(featuresKey)) {
    config.insert(featuresKey, toml::table());
  }
  toml::table *features = config[featuresKey].as_table();
  if (features == nullptr) {
    return false;
  }
  features->insert_or_assign(hooksKey, true);
  return true;
}

} // namespace

bool hooksFeatureEnabled(const QByteArray &toml) {
  bool inFeatures = false;
  for (const QByteArray &line : toml.split('\n')) {
    const QByteArray text = significant(line);
    if (isSectionHead(text)) {
      inFeatures = text == sectionHead;
    } else if (const auto value = switchValue(text); inFeatures && value) {
      return *value == onValue;
    }
  }
  return false;
}

QByteArray withHooksFeatureEnabled(const QByteArray &toml) {
  if (hooksFeatureEnabled(toml)) {
    return toml;
  }
  QList<QByteArray> lines = toml.split('\n');
  qsizetype head = 0;
  while (head < lines.size() && significant(lines[head]) != sectionHead) {
    ++head;
  }
  if (head == lines.size()) {
    appendSection(lines);
    return lines.join('\n');
  }
  for (qsizetype at = head + 1; at < lines.size(); ++at) {
    const QByteArray text = significant(lines[at]);
    if (isSectionHead(text)) {
      break;
    }
    if (switchValue(text)) {
      lines[at] = onLine;
      return lines.join('\n');
    }
  }
  lines.insert(head + 1, onLine);
  return lines.join('\n');
}

Switch byToml(const QByteArray &toml) {
  const auto table = parsed(toml);
  if (!table) {
    return Switch::notUnderstood;
  }
  return (*table)[featuresKey][hooksKey].value_exact<bool>().value_or(false) ? Switch::on
                                                                             : Switch::off;
}

bool isSafeChange(const QByteArray &before, const QByteArray &after) {
  if (after == before) {
    return true;
  }
  auto wanted = parsed(before);
  if (!wanted) {
    return isWithinLimits(before);
  }
  const auto got = parsed(after);
  return got && turnOn(*wanted) && *got == *wanted;
}

} // namespace morvo::CodexConfig
