#include "monitor/HookParser.h"

#include <QStringList>

#include <initializer_list>
#include <optional>

namespace morvo::HookParser {
namespace {

const QString kindKey = QStringLiteral("kind");
const QString providerKey = QStringLiteral("provider");
const QString statusKey = QStringLiteral("status");
const QString labelKey = QStringLiteral("label");

const QString permissionKind = QStringLiteral("perm");
const QString agentKind = QStringLiteral("agent");

const QString done = QStringLiteral("done");
const QString needsInput = QStringLiteral("needs_input");

const QString unknownSource = QStringLiteral("unknown");

std::optional<QString> text(const QJsonObject &object, const QString &key) {
  const auto value = object.value(key);
  return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QString> firstText(const QJsonObject &object, std::initializer_list<QString> keys) {
  for (const QString &key : keys) {
    if (auto found = text(object, key)) {
      return found;
    }
  }
  return std::nullopt;
}

bool asksForPermission(const QString &eventName) {
  return eventName == QStringLiteral("PermissionRequest") ||
         eventName == QStringLiteral("permission_request");
}

QString needsInputLabel(const QJsonObject &line, const QString &eventName) {
  if (auto message = text(line, QStringLiteral("message"))) {
    return *message;
  }
  const auto toolInput = line.value(QStringLiteral("tool_input")).toObject();
  if (auto description = text(toolInput, QStringLiteral("description"))) {
    return *description;
  }
  return asksForPermission(eventName) ? QStringLiteral("等待你批准工具调用")
                                      : QStringLiteral("等待你确认");
}

QJsonObject agentSignal(const QString &provider, const QString &status) {
  return {{kindKey, agentKind}, {providerKey, provider}, {statusKey, status}};
}

QJsonObject readyMadeSignal(const QJsonObject &line, const QString &status) {
  auto signal = agentSignal(text(line, providerKey).value_or(unknownSource), status);
  if (const auto label = text(line, labelKey)) {
    signal.insert(labelKey, *label);
  }
  return signal;
}

QList<QJsonObject> hookSignals(const QJsonObject &line) {
  const QString name = firstText(line, {QStringLiteral("hook_event_name"),
                                        QStringLiteral("hookEventType"), QStringLiteral("event")})
                           .value_or(QString());
  const QString status = normalizeEventName(name);
  if (status.isEmpty()) {
    return {};
  }
  const auto source = firstText(line, {QStringLiteral("_src"), QStringLiteral("ide_name"),
                                       QStringLiteral("client"), QStringLiteral("source_app")});
  auto signal = agentSignal(source.value_or(unknownSource), status);
  if (status == needsInput) {
    signal.insert(labelKey, needsInputLabel(line, name));
  }
  return {signal};
}

} // namespace

QString normalizeEventName(const QString &name) {
  static const QStringList doneNames{QStringLiteral("Stop"),         QStringLiteral("SubagentStop"),
                                     QStringLiteral("stop"),         QStringLiteral("AfterModel"),
                                     QStringLiteral("session.idle"), QStringLiteral("SessionEnd")};
  static const QStringList needsInputNames{
      QStringLiteral("Notification"), QStringLiteral("PermissionRequest"),
      QStringLiteral("permission_request"), QStringLiteral("needs_input")};
  if (doneNames.contains(name)) {
    return done;
  }
  return needsInputNames.contains(name) ? needsInput : QString();
}

QList<QJsonObject> signals(const QJsonObject &line) {
  const auto kind = text(line, kindKey);
  if (kind == permissionKind) {
    return {line};
  }
  if (kind == agentKind) {
    if (const auto status = text(line, statusKey)) {
      return {readyMadeSignal(line, *status)};
    }
  }
  return hookSignals(line);
}

} // namespace morvo::HookParser
