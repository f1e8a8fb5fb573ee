#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

/// Turns a line of the inbox into what the hub reacts to.
///
/// A signal is a JSON object whose `kind` is "perm" (a tool permission is asked for) or "agent" (an
/// agent's `status`, with its `provider` and perhaps a `label`).
namespace morvo::HookParser {

/// "done" or "needs_input" for the event names that agents use for them, else empty. Compares the
/// whole name, with case.
[[nodiscard]] QString normalizeEventName(const QString &name);

/// The line's signal, or none. Keys that are not known are ignored, so any agent is understood that
/// sends one of the known event names.
[[nodiscard]] QList<QJsonObject> signals(const QJsonObject &line);

} // namespace morvo::HookParser
