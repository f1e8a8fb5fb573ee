#include "monitor/CodexConfig.h"

#include <QList>

#include <optional>
#include <sstream>
#include <toml++/toml.h>

namespace morvo::CodexConfig {
namespace {

constexpr QByteArrayView sectionHead("[features]");
constexpr QByteArrayView switchKey("hooks");
constexpr QByteArrayView onValue("true");
constexpr const char *onLine = "hooks = true";

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

/// The parsed text; nothing when it is no TOML.
std::optional<toml::table> parsed(const QByteArray &text) {
  try {
    return toml::parse(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
  } catch (const toml::parse_error &) {
    return std::nullopt;
  }
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

bool isSafeChange(const QByteArray &before, const QByteArray &after) {
  if (after == before || !parsed(before)) {
    return true;
  }
  const auto table = parsed(after);
  return table && (*table)["features"]["hooks"].value_or(false);
}

} // namespace morvo::CodexConfig
